// The activity logs as the rest of the program asks for them.

#include "Classes/ACTIVITY_LOGS/LogNode.h"
#include "Tests/Controller/MonitorFixture.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>

namespace
{
class LogsTest : public MonitorFixture
{
protected:
    /// A day file of yesterday, whose records have session logs of these names and statuses.
    void writeDay(const std::vector<std::pair<QString, QString>> &records)
    {
        const QString day = clock.now().addDays(-1).toString(u"MM-dd-yyyy"_s);
        QString text = u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n"_s;
        int minute = 0;
        for (const auto &[log, status] : records) {
            LogNode record;
            record.datetime = u"%1 10:%2:00"_s.arg(day).arg(10 + minute++);
            record.uname = User;
            record.status = status;
            record.optype = u"1"_s;
            record.logfile = sessionLog(log);
            home.write(record.logfile, "text");
            text += *record.flattenSelfToXML();
        }
        dayFile = pathValue("LogsDumpPath"_L1, {}) + u'/' + day + u".xml"_s;
        home.write(dayFile, (text + u"</records>\n"_s).toUtf8());
    }
    static QString sessionLog(const QString &name)
    {
        return pathValue("SessionLogsNewFolderPath"_L1, {}) + u"/Backup/"_s + name;
    }
    static bool isWindowShown()
    {
        return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget *widget) {
            return widget->isVisible() && widget->windowTitle() == u"Activity logs"_s;
        });
    }
    /// A flag in the product's folder, and the look at it that an activation brings.
    void flag(const QString &name)
    {
        const QString file = pathValue("ApplicationRootFolderPath"_L1, {}) + u'/' + name;
        home.write(file, "");
        controller.applicationWasActivated();
        EXPECT_FALSE(QFileInfo::exists(file)) << "each flag acts once";
    }
    QStringList inProgressOf(const QByteArray &frame) const
    {
        return QJsonDocument::fromJson(frame).object()[u"data"][u"inProgress"].toVariant().toStringList();
    }

    QString dayFile;
};
} // namespace

TEST_F(LogsTest, OnlyWhoMeansTheLogsOpensThem)
{
    start();
    controller.logs().launchActivityLogs(u"Preferences"_s);
    flag(u"viewManageScheduleJobs"_s);
    EXPECT_FALSE(isWindowShown());
    EXPECT_EQ(done, QStringList({u"open"_s, u"launch Corvane"_s}))
        << "the main application is asked for the jobs";
    controller.logs().launchActivityLogs(u"ActivityLogs"_s);
    EXPECT_TRUE(isWindowShown());
    flag(u"viewLogs"_s);
    EXPECT_TRUE(isWindowShown());
}

TEST_F(LogsTest, AnOrderFromTheWebDeletesThatRecordAlone)
{
    writeDay({{u"one"_s, u"Success"_s}, {u"two"_s, u"Success"_s}});
    start();
    const QVariantMap order{
        {u"ChannelType"_s, u"DeleteLog"_s}, {u"logFile"_s, u"one"_s}, {u"operation"_s, u"Backup"_s}};
    receive({u"RemoteManage"_s, QVariantMap{{u"ChannelType"_s, u"DeleteLog"_s}, {u"logFile"_s, u"one"_s}}});
    receive({u"RemoteManage"_s, order});
    ASSERT_TRUE(waitUntil([] { return !QFileInfo::exists(sessionLog(u"one"_s)); }));
    ASSERT_TRUE(waitUntil([this] { return !home.read(dayFile).contains("Backup/one"); }));
    EXPECT_TRUE(home.read(dayFile).contains("Backup/two"));
    EXPECT_TRUE(QFileInfo::exists(sessionLog(u"two"_s)));
}

TEST_F(LogsTest, ALostConnectionEndsWhatWasInProgressAndTellsTheDaemonOnce)
{
    writeDay({{u"running"_s, u"In Progress"_s}, {u"done"_s, u"Success"_s}});
    start();
    EXPECT_EQ(inProgressOf(ping), QStringList());
    peer.reset();
    ASSERT_TRUE(waitUntil([this] { return !home.read(dayFile).contains("In Progress"); }));
    EXPECT_TRUE(home.read(dayFile).contains("Backup/done"));
    clock.advance(100ms); // the pace of trying again
    peer = listener.accept();
    ASSERT_TRUE(peer);
    QStringList told = inProgressOf(peer->receiveFrame());
    if (told.isEmpty()) // back before the records had gone: the daemon hears of them when they have
        told = inProgressOf(peer->receiveFrame());
    EXPECT_EQ(told, QStringList(sessionLog(u"running"_s)));
    EXPECT_TRUE(controller.pingDetails().value(u"inProgress"_s).toList().isEmpty());
}
