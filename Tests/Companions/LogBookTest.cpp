// What the backup daemon leaves of its jobs. Forms are written out: the monitor's side has its own idea of
// them.

#include "Companions/BackupDaemon/BackupDaemon.h"
#include "Companions/BackupDaemon/FrameCodec.h"
#include "Companions/BackupDaemon/HostileLogs.h"
#include "Companions/BackupDaemon/LogHistory.h"
#include "Companions/Common/PropertyList.h"
#include "Tests/Companions/TemporaryHome.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QFileInfo>
#include <QTcpSocket>

#include <set>

using namespace Qt::StringLiterals;

namespace
{
const QString Ana = u"ana@example.com"_s;
const QDateTime Morning(QDate(2026, 11, 23), QTime(8, 5, 9));

class LogBookTest : public testing::Test
{
protected:
    [[nodiscard]] LogRecords recordsOf(const QString &logname) const
    {
        return dayRecords(readTextFile(logs.dayPath(logname)).toUtf8()).value_or(LogRecords());
    }

    const TemporaryHome home;
    LogBook logs{home.table};
};
} // namespace

TEST(LogRecords, HaveTheFormOfADayFileAndComeBackFromIt)
{
    const LogRecord record{
        u"11-23-2026 08:05:09"_s, u"ana"_s, u"7"_s,  u"2"_s,         u"a & b <c>"_s, u"00:00:01"_s, u"2"_s,
        u"x\u0001\ufffe\ry"_s,    u"/p"_s,  u"/l"_s, u"11-23-2026"_s};
    const QByteArray bytes = dayFileBytes({record});
    EXPECT_EQ(bytes, "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n<record>\n"
                     "\t<datetime>11-23-2026 08:05:09</datetime>\n\t<uname>ana</uname>\n\t<files>7</files>\n"
                     "\t<filesinsync>2</filesinsync>\n\t<status>a &amp; b &lt;c&gt;</status>\n"
                     "\t<duration>00:00:01</duration>\n\t<content>x&#13;y</content>\n\t<optype>2</optype>\n"
                     "\t<lpath>/p</lpath>\n\t<logfile>/l</logfile>\n\t<logname>11-23-2026</logname>\n"
                     "</record>\n</records>\n");
    const auto read = dayRecords(bytes);
    ASSERT_TRUE(read && read->size() == 1);
    EXPECT_EQ(read->front().status, u"a & b <c>"_s);
    EXPECT_EQ(read->front().content, u"x\ry"_s);
    for (const char *damaged : {"", "<records>", "<records><record></records>", "<records/>x"})
        EXPECT_FALSE(dayRecords(damaged)) << damaged;
}

TEST_F(LogBookTest, EachKindOfJobHasItsPlaces)
{
    const struct {
        const char *name;
        int optype;
        const char *log, *day;
        QStringList beside;
    } rows[] = {
        {"backup", 2, "Backup/11-23-2026-08-05-09", "11-23-2026", {u".summary"_s}},
        {"restore", 11, "Restore/11-23-2026-08-05-09", "11-23-2026", {u".summary"_s}},
        {"protection", 7, "Continuous Data Protection/11-23-2026-08-05-09", "11-23-2026_cdp", {u".summary"_s}},
        {"sync",
         12,
         "Sync/11-23-2026-08-05-09_sync",
         "11-23-2026_sync",
         {u".sync-up"_s, u".sync-down"_s, u".rename"_s, u".delete"_s}},
    };
    forEachRow(rows, [this](const auto &row) {
        LogBook::Entry entry = logs.begin(Ana, row.optype, Morning);
        entry.story.files = backupSetOf(Ana, 5);
        LogBook::conclude(entry, LogStatus::Success, Morning.addSecs(61), std::chrono::seconds(61));
        ASSERT_TRUE(logs.write(entry));
        const QString log = logs.sessionFolder() + u'/' + QLatin1StringView(row.log);
        EXPECT_EQ(recordsOf(QLatin1StringView(row.day)).back().logfile, log);
        EXPECT_EQ(recordsOf(QLatin1StringView(row.day)).back().duration, u"00:01:01"_s);
        for (const QString &ending : row.beside)
            EXPECT_TRUE(QFileInfo(log + ending).size() > 0) << ending.toStdString();
        EXPECT_EQ(readTextFile(log).count("File Size: "_L1), 5);
    });
}

TEST_F(LogBookTest, AnEndTakesThePlaceOfItsOwnRunningRecord)
{
    LogBook::Entry first = logs.begin(Ana, 2, Morning);
    ASSERT_TRUE(logs.write(first));
    const LogBook::Entry second = logs.begin(u"bo"_s, 2, Morning);
    EXPECT_NE(second.record.logfile, first.record.logfile) << "two jobs of one second";
    ASSERT_TRUE(logs.write(second));
    EXPECT_EQ(recordsOf(u"11-23-2026"_s).front().duration, u"--:--:--"_s);
    LogBook::conclude(first, LogStatus::Failure, Morning, {});
    ASSERT_TRUE(logs.write(first));
    const LogRecords records = recordsOf(u"11-23-2026"_s);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records.front().status, u"Failure"_s);
    EXPECT_EQ(records.back().status, u"In Progress"_s);

    const QString path = logs.dayPath(u"11-23-2026"_s);
    ASSERT_TRUE(writeWholeFile(path, "<records>"));
    EXPECT_FALSE(logs.write(first));
    EXPECT_EQ(readTextFile(path), u"<records>"_s) << "what others may still mend";
}

TEST_F(LogBookTest, ATextTellsItsLanguage)
{
    const SessionStory story{Ana, 2, Morning, Morning, LogStatus::Success, {}, 0};
    const struct {
        const char *name;
        LogLanguage language;
        QString word;
    } rows[] = {{"English", LogLanguage::English, u"successfully"_s},
                {"Spanish", LogLanguage::Spanish, u"Nombre de usuario"_s},
                {"Japanese", LogLanguage::Japanese, u"開始時刻"_s}};
    forEachRow(rows, [&](const auto &row) {
        EXPECT_TRUE(sessionLogText(story, row.language).contains(row.word));
        EXPECT_TRUE(sessionLogText(story, row.language).contains(u"Mode : Scheduled Backup"_s));
        EXPECT_FALSE(linkSentences(row.language, home.table).summary.contains(u"%@"_s));
    });
}

TEST_F(LogBookTest, HistoryEndsNowAndHoldsSeveralUsers)
{
    const struct {
        const char *name;
        QTime now;
        int files, records;
    } rows[] = {{"by day", QTime(8, 0), 6, 180}, {"just after midnight", QTime(0, 0, 10), 3, 90}};
    forEachRow(rows, [this](const auto &row) {
        const LogHistory history(home.table);
        ASSERT_TRUE(history.clear());
        const QDateTime now(QDate(2026, 11, 23), row.now);
        EXPECT_EQ(history.write(logs, Ana, 2, now).records, row.records);
        const QStringList names = QDir(logs.dayFolder()).entryList({u"*.xml"_s});
        EXPECT_EQ(names.size(), row.files);
        std::set<QString> users;
        for (const QString &name : names) {
            std::set<QString> keys;
            for (const LogRecord &record : recordsOf(name.chopped(4))) {
                users.insert(record.uname);
                keys.insert(record.optype + u' ' + record.datetime);
                EXPECT_LE(QDateTime::fromString(record.datetime, u"MM-dd-yyyy HH:mm:ss"_s), now);
            }
            EXPECT_EQ(keys.size(), 30U) << "a double would not be listed";
        }
        EXPECT_EQ(users.size(), 4U);
    });
}

TEST_F(LogBookTest, OldLogsHaveNoSummaryAndNoRecord)
{
    EXPECT_EQ(LogHistory(home.table).writeOldLogs(logs, Ana, 60, Morning).files, 60);
    EXPECT_FALSE(QFileInfo::exists(logs.dayFolder()));
    EXPECT_TRUE(QDir(logs.sessionFolder() + u"/Backup"_s).entryList({u"*.summary"_s}).isEmpty());
    const QString oldest = QDir(logs.sessionFolder() + u"/PutBack"_s).entryList(QDir::Files).constFirst();
    EXPECT_GT(QDate::fromString(oldest.left(10), u"MM-dd-yyyy"_s), Morning.date().addDays(-30));
}

TEST_F(LogBookTest, HostileLogsAreMadeTakenAwayAndMissTheirVictims)
{
    const HostileLogs hostile(home.table);
    EXPECT_FALSE(hostile.lostVictims().isEmpty()) << "none are there yet";
    EXPECT_EQ(hostile.write(Ana, Morning), QStringList());
    EXPECT_EQ(hostile.write(Ana, Morning), QStringList()) << "over the first";
    EXPECT_TRUE(LogHistory(home.table).clear());
    EXPECT_EQ(hostile.lostVictims(), QStringList());
    ASSERT_TRUE(QFile::remove(QDir::homePath() + u"/Documents/Victims/above.txt"_s));
    EXPECT_EQ(hostile.lostVictims(), QStringList{u"above.txt"_s});
}

TEST_F(LogBookTest, ARunningJobIsWrittenAgainWhereItsRecordWasTaken)
{
    BackupDaemon daemon(home.table);
    ASSERT_TRUE(daemon.start(0));
    daemon.runCommand(u"interactive ana@example.com 600"_s);
    const QString day =
        QDir(logs.dayFolder()).entryList({u"*.xml"_s}).value(0).chopped(4); // today's, at any hour
    ASSERT_EQ(recordsOf(day).size(), 1U);
    const QString log = recordsOf(day).front().logfile;
    ASSERT_TRUE(writeWholeFile(logs.dayPath(day), dayFileBytes({})));

    QTcpSocket monitor;
    const QVariantMap port = readPropertyList(home.table.path(u"TCPPortFile"_s)).toMap();
    monitor.connectToHost(QHostAddress::LocalHost, port.value(u"port"_s).value<quint16>());
    for (const QString &lost : {u"/another"_s, log})
        monitor.write(
            framed("{\"type\":\"PingFromMonitor\",\"data\":{\"inProgress\":[\"" + lost.toUtf8() + "\"]}}"));
    EXPECT_TRUE(waitUntil([&] { return recordsOf(day).size() == 1; }));
    daemon.runCommand(u"fail"_s);
    ASSERT_EQ(recordsOf(day).size(), 1U);
    EXPECT_EQ(recordsOf(day).front().status, u"Failure"_s);
    EXPECT_EQ(recordsOf(day).front().optype, u"1"_s);
    EXPECT_TRUE(QFileInfo::exists(log + u".summary"_s));
}
