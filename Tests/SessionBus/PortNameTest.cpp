#include "Platform/SessionBus/PortName.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

TEST(PortName, EscapesWhatIsNoLetterAndNoDigit)
{
    const QString prefix = QStringLiteral("com.halvernet.Corvane.Port.");
    const struct {
        const char *name;
        QString port;
        QString expected;
    } rows[] = {
        {"letters and digits stay", QStringLiteral("SyncMD0b9fann"), QStringLiteral("SyncMD0b9fann")},
        {"an underscore would be an escape", QStringLiteral("a_b"), QStringLiteral("a_5fb")},
        {"punctuation of bus names", QStringLiteral("a.b-c"), QStringLiteral("a_2eb_2dc")},
        {"a blank and a slash", QStringLiteral("a b/c"), QStringLiteral("a_20b_2fc")},
        {"lower-case hex digits", QStringLiteral("a~"), QStringLiteral("a_7e")},
        {"two bytes", QStringLiteral("zoë"), QStringLiteral("zo_c3_ab")},
        {"three bytes", QStringLiteral("山"), QStringLiteral("_e5_b1_b1")},
        {"four bytes from a surrogate pair", QStringLiteral("x😀"), QStringLiteral("x_f0_9f_98_80")},
        {"a digit of another script", QStringLiteral("x٣"), QStringLiteral("x_d9_a3")},
        {"the longest that fits", QString(228, u'x'), QString(228, u'x')},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PortName::busName(row.port), prefix + row.expected);
    }
}

TEST(PortName, IsEmptyWhereTheBusKnowsNoSuchName)
{
    EXPECT_EQ(PortName::busName(QString()), QString());
    EXPECT_EQ(PortName::busName(QStringLiteral("1st")), QString()) << "an element begins with a digit";
    EXPECT_EQ(PortName::busName(QString(229, u'x')), QString()) << "256 characters";
    EXPECT_EQ(PortName::busName(QString(77, u'-')), QString()) << "too long once it is escaped";
}
