#include "Platform/SessionBus/BusValue.h"
#include "Platform/SessionBus/PortName.h"
#include "Tests/Support/PrintQt.h"

#include <QDateTime>
#include <QSize>
#include <QTimeZone>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(BusValue, NotificationsCarryNothingButTheirFiveKinds)
{
    const std::tuple<const char *, QVariant, QVariant> rows[] = {
        {"number", -7, -7},
        {"a list of nothing but texts", QVariantList{u"a"_s}, QStringList{u"a"_s}},
        {"a mixed list", QVariantList{u"a"_s, 1}, {}},
        {"a wide number that does not", qlonglong(2147483648), {}},
        {"an unsigned number that does not", 4294967295U, {}},
        {"a fraction", 1.5, {}},
        {"bytes", QByteArray("x"), {}},
        {"a dictionary with one bad entry", QVariantMap{{u"good"_s, 1}, {u"bad"_s, 1.5}},
         QVariantMap{{u"good"_s, 1}}},
    };
    for (const auto &[name, given, expected] : rows) {
        const QVariant kept = BusValue::notificationDetails({{u"key"_s, given}}).value(u"key"_s);
        EXPECT_EQ(kept, expected) << name;
        EXPECT_EQ(kept.typeId(), expected.typeId()) << name;
    }
}

TEST(BusValue, TextsThatComeAreCutAtTheirLimits)
{
    const QString pair = QString::fromUcs4(U"\U0001f382");
    const std::tuple<const char *, QString, QString> rows[] = {
        {"at the limit", QString(65536, u'x'), QString(65536, u'x')},
        {"over it", QString(40'000'000, u'x'), QString(65536, u'x')},
        {"a character across it", QString(65535, u'x') + pair, QString(65535, u'x')},
        {"200 lines", u"\n"_s.repeated(199) + u'x', u"\n"_s.repeated(199) + u'x'},
        {"201 lines", u"a\n"_s.repeated(200) + u'x', u"a\n"_s.repeated(199) + u'a'},
        {"nothing", QString(), QString()},
    };
    for (const auto &[name, given, expected] : rows) {
        EXPECT_TRUE(BusValue::plain(QStringList{given}) == QVariant(QStringList{expected})) << name;
        EXPECT_TRUE(BusValue::plainList(QVariantList{QVariantMap{{given, given}}}) ==
                    QVariantList{QVariant(QVariantMap{{expected, expected}})})
            << name;
    }
}

TEST(BusValue, SendsARecordOfAnyTypesAsWhatTheBusKnows)
{
    const QDateTime date(QDate(2026, 11, 22), QTime(22, 5), QTimeZone::utc());
    const QVariantMap record{
        {u"Username"_s, u"ann"_s},  {u"isTQL"_s, true},      {u"size"_s, qlonglong(1) << 40}, {u"last"_s, date},
        {u"window"_s, QSize(1, 2)}, {u"none"_s, QVariant()}, {u"list"_s, QVariantList{1, {}}}};
    const QVariantMap expected{{u"Username"_s, u"ann"_s},
                               {u"isTQL"_s, true},
                               {u"size"_s, qlonglong(1099511627776)},
                               {u"last"_s, u"2026-11-22T22:05:00Z"_s},
                               {u"list"_s, QVariantList{1, QString()}}};
    EXPECT_EQ(BusValue::sendable(record).toMap(), expected);
    EXPECT_EQ(BusValue::sendable(QSize(1, 2)), QVariant(QString())) << "a position that must be filled";
}

TEST(PortName, EscapesWhatIsNoLetterAndNoDigit)
{
    const std::pair<QString, QString> rows[] = {
        {u"SyncMD0b9fann"_s, u"SyncMD0b9fann"_s}, // letters and digits stay
        {u"a_b"_s, u"a_5fb"_s},                   // an underscore would be an escape
        {u"a.b-c d/e"_s, u"a_2eb_2dc_20d_2fe"_s},
        {u"zoë"_s, u"zo_c3_ab"_s},
        {u"x😀"_s, u"x_f0_9f_98_80"_s},
        {u"x٣"_s, u"x_d9_a3"_s}, // a digit of another script
        {QString(228, u'x'), QString(228, u'x')},
    };
    for (const auto &[port, expected] : rows)
        EXPECT_EQ(PortName::busName(port), QString(u"com.halvernet.Corvane.Port."_s + expected));
}

TEST(PortName, IsEmptyWhereTheBusKnowsNoSuchName)
{
    EXPECT_EQ(PortName::busName(QString()), QString());
    EXPECT_EQ(PortName::busName(u"1st"_s), QString()) << "an element begins with a digit";
    EXPECT_EQ(PortName::busName(QString(229, u'x')), QString()) << "256 characters";
    EXPECT_EQ(PortName::busName(QString(77, u'-')), QString()) << "too long once it is escaped";
}
