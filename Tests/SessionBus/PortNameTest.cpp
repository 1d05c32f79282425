#include "Platform/SessionBus/PortName.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(PortName, EscapesWhatIsNoLetterAndNoDigit)
{
    const QString prefix = u"com.halvernet.Corvane.Port."_s;
    const std::tuple<const char *, QString, QString> rows[] = {
        {"letters and digits stay", u"SyncMD0b9fann"_s, u"SyncMD0b9fann"_s},
        {"an underscore would be an escape", u"a_b"_s, u"a_5fb"_s},
        {"punctuation of bus names", u"a.b-c"_s, u"a_2eb_2dc"_s},
        {"a blank and a slash", u"a b/c"_s, u"a_20b_2fc"_s},
        {"lower-case hex digits", u"a~"_s, u"a_7e"_s},
        {"two bytes", u"zoë"_s, u"zo_c3_ab"_s},
        {"three bytes", u"山"_s, u"_e5_b1_b1"_s},
        {"four bytes from a surrogate pair", u"x😀"_s, u"x_f0_9f_98_80"_s},
        {"a digit of another script", u"x٣"_s, u"x_d9_a3"_s},
        {"the longest that fits", QString(228, u'x'), QString(228, u'x')},
    };
    for (const auto &[name, port, expected] : rows)
        EXPECT_EQ(PortName::busName(port), prefix + expected) << name;
}

TEST(PortName, IsEmptyWhereTheBusKnowsNoSuchName)
{
    EXPECT_EQ(PortName::busName(QString()), QString());
    EXPECT_EQ(PortName::busName(u"1st"_s), QString()) << "an element begins with a digit";
    EXPECT_EQ(PortName::busName(QString(229, u'x')), QString()) << "256 characters";
    EXPECT_EQ(PortName::busName(QString(77, u'-')), QString()) << "too long once it is escaped";
}
