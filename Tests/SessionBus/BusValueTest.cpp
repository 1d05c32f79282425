#include "Platform/SessionBus/BusValue.h"
#include "Tests/Support/PrintQt.h"

#include <QDateTime>
#include <QSize>
#include <QTimeZone>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(BusValue, NotificationsCarryTheirFiveKindsAndNothingElse)
{
    const std::tuple<const char *, QVariant, QVariant> rows[] = {
        {"text", u"EnableSync"_s, u"EnableSync"_s},
        {"empty text", QString(), QString()},
        {"truth", true, true},
        {"number", -7, -7},
        {"texts", QStringList{u"a"_s, u"b"_s}, QStringList{u"a"_s, u"b"_s}},
        {"a list of nothing but texts", QVariantList{u"a"_s}, QStringList{u"a"_s}},
        {"a mixed list", QVariantList{u"a"_s, 1}, {}},
        {"a wide number that fits", qlonglong(2147483647), 2147483647},
        {"a wide number that does not", qlonglong(2147483648), {}},
        {"an unsigned number that does not", 4294967295U, {}},
        {"a fraction", 1.5, {}},
        {"bytes", QByteArray("x"), {}},
        {"no value", QVariant(), {}},
        {"a dictionary with one bad entry", QVariantMap{{u"good"_s, 1}, {u"bad"_s, 1.5}},
         QVariantMap{{u"good"_s, 1}}},
    };
    for (const auto &[name, given, expected] : rows) {
        SCOPED_TRACE(name);
        const QVariant kept = BusValue::notificationDetails({{u"key"_s, given}}).value(u"key"_s);
        EXPECT_EQ(kept, expected);
        EXPECT_EQ(kept.typeId(), expected.typeId());
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
