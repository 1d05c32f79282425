#include "Companions/BackupDaemon/Throttle.h"
#include "Companions/Common/PropertyList.h"
#include "Companions/MainApplication/MainApplication.h"
#include "Tests/Companions/TemporaryHome.h"

#include <gtest/gtest.h>

namespace
{
const QString Auto = QStringLiteral("EnableBandwidthThrottleKey");
const QString Always = QStringLiteral("BandwidthThrottleKey");
const QString Busy = QStringLiteral("BandwidthThrottleAutoPauseKey");
const QString Idle = QStringLiteral("BandwidthThrottleForIdleKey");
} // namespace

TEST(Throttle, PercentOfTheSettingsThatCount)
{
    const QString fifty = QStringLiteral("50");
    const struct {
        const char *name;
        QVariantMap settings;
        int percent;
    } rows[] = {
        {"text", {{Auto, false}, {Always, fifty}, {Busy, QStringLiteral("20")}}, 50},
        {"integer", {{Always, qlonglong(50)}}, 50},
        {"auto-pause", {{Auto, true}, {Always, fifty}, {Busy, QStringLiteral("20")}}, 20},
        {"auto-pause as text", {{Auto, QStringLiteral("1")}, {Always, fifty}, {Busy, qlonglong(20)}}, 20},
        {"no word switches it on",
         {{Auto, QStringLiteral("true")}, {Always, fifty}, {Busy, qlonglong(20)}},
         50},
        {"nor a number", {{Auto, qlonglong(1)}, {Always, fifty}, {Busy, qlonglong(20)}}, 50},
        {"nothing stored", {}, 100},
        {"no number", {{Always, QStringLiteral("half")}}, 100},
        {"another type", {{Always, 50.0}}, 100},
        {"none", {{Always, QStringLiteral("0")}}, 1},
        {"below none", {{Always, qlonglong(-1)}}, 1},
        {"above all", {{Always, QStringLiteral("500")}}, 100},
        {"beyond 32 bits", {{Always, QStringLiteral("4294967346")}}, 100},
    };
    for (const auto &row : rows)
        EXPECT_EQ(allowedBandwidth(row.settings), row.percent) << row.name;
}

TEST(Throttle, ApplicationChangesOneKeyAndKeepsTheRest)
{
    const TemporaryHome home;
    const QString file = home.file(QStringLiteral("preferences.plist"));
    const QVariantMap other{{QStringLiteral("Unknown"), QStringLiteral("kept")}};
    ASSERT_TRUE(writePropertyList(file, {{QStringLiteral("Bo"), other},
                                         {QStringLiteral("Ana"), QVariantMap{{Idle, QStringLiteral("90")}}}}));
    const MainApplication application(TemporaryHome::table());
    ASSERT_TRUE(application.run(QStringLiteral("sign in Ana")).done);
    const auto settings = [&file] {
        return readPropertyList(file).toMap().value(QStringLiteral("Ana")).toMap();
    };
    const QVariantMap first = settings();
    EXPECT_EQ(first.value(Auto), QVariant(false));
    EXPECT_EQ(first.value(Always), QStringLiteral("75"));
    EXPECT_EQ(first.value(Busy), QStringLiteral("50"));
    EXPECT_EQ(first.value(Idle), QStringLiteral("90")) << "what was there stays";
    EXPECT_EQ(first.size(), 6);

    const struct {
        const char *line;
        const QString &key;
        QVariant value;
    } rows[] = {{"throttle 40", Always, QStringLiteral("40")},
                {"throttle auto on", Auto, true},
                {"throttle 30", Busy, QStringLiteral("30")},
                {"throttle auto off", Auto, false},
                {"throttle 0", Always, QStringLiteral("0")}};
    QVariantMap expected = first;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_TRUE(application.run(QString::fromLatin1(row.line)).done);
        expected.insert(row.key, row.value);
        EXPECT_EQ(settings(), expected);
    }
    for (const char *line : {"throttle", "throttle -1", "throttle 101", "throttle half", "throttle auto maybe"})
        EXPECT_FALSE(application.run(QString::fromLatin1(line)).done) << line;
    ASSERT_TRUE(application.run(QStringLiteral("sign in Ana")).done);
    EXPECT_EQ(settings(), expected) << "the next sign-in changes nothing";
    EXPECT_EQ(readPropertyList(file).toMap().value(QStringLiteral("Bo")).toMap(), other);
}
