// Records of session logs that have none.

#include "Classes/ACTIVITY_LOGS/OldSessionLogs.h"
#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Classes/ACTIVITY_LOGS/LineCount.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"
#include "Platform/UserDefaults.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

TEST(LineCountTest, CountsTheLinesThatGrepWouldPrintHoweverTheyArrive)
{
    const Row<QByteArray, qint64> rows[] = {
        {"empty", "", 0},
        {"twice in a line", "file size: 1 file size: 2\n", 1},
        {"last line without its end", "x\nFILE SIZE:\nfile size: 3", 2},
        {"over two lines", "file\nsize:", 0},
        {"a false start", "file sifile size:\n", 1},
        {"behind a zero", QByteArray("\0file size:\n\0\nFile Size:\n", 26), 2},
    };
    forEachRow(rows, [](const auto &row) {
        for (const qsizetype piece : {qsizetype(1), qsizetype(7), qsizetype(100)}) {
            LineCount count("file size:", LineCount::Letters::AnyCase);
            for (qsizetype at = 0; at < row.given.size(); at += piece)
                count.feed(QByteArrayView(row.given).sliced(at, std::min(piece, row.given.size() - at)));
            EXPECT_EQ(count.lines(), row.expected) << piece;
        }
    });
    LineCount exact("Deleted file", LineCount::Letters::Exact);
    exact.feed("deleted file\nDeleted file\n");
    EXPECT_EQ(exact.lines(), 1);
}

namespace
{
class OldSessionLogsTest : public testing::Test
{
protected:
    void log(const QString &relative, const QByteArray &text) const { home.write(logs + relative, text); }
    [[nodiscard]] std::optional<int> create(QDate today = QDate(2026, 11, 23)) const
    {
        return OldSessionLogs(home.path(logs + u"LOGXML"_s), today, {}).createOldLogs();
    }
    /// The records of a day as "optype files status logfile's name".
    [[nodiscard]] QStringList day(const QString &name) const
    {
        QStringList lines;
        const auto nodes = DayFile::read(home.read(logs + u"LOGXML/"_s + name + u".xml"_s), name);
        for (const LogNodePtr &node : nodes.value_or(LogNodes())) {
            EXPECT_EQ(node->logname, name);
            EXPECT_EQ(node->duration, u"--:--:--"_s);
            EXPECT_EQ(node->datetime, node->logfile.section(u'/', -1));
            lines.append(QStringList{node->optype, node->files, node->status}.join(u' '));
        }
        return lines;
    }

    TemporaryHome home;
    const QString logs = u"Data/User's \"logs\"\n/"_s;
};
} // namespace

TEST_F(OldSessionLogsTest, EachOperationIsCountedInItsOwnWords)
{
    log(u"Backup/11-23-2026-10-00-00"_s, "file size: 1\nFile Size: 2\nbacked up Successfully\n");
    log(u"Backup/11-23-2026-11-00-00"_s, "Mode : scheduled backup\nfile size: 1\n");
    log(u"Restore/11-23-2026-10-00-00"_s, "file size: 7\nMode : Scheduled Backup\nsuccessfully");
    log(u"Delete/11-23-2026-10-00-00"_s, "Deleted file a\ndeleted file b\n");
    log(u"Rename/11-23-2026-10-00-00"_s, "Renamed file a\nRenamed file b\n");
    log(u"PutBack/11-23-2026-10-00-00"_s, "moved file a\nMoved File b\n");
    EXPECT_EQ(create(), 6);
    EXPECT_EQ(day(u"11-23-2026"_s), (QStringList{u"1 2 Success"_s, u"2 1 -----"_s, u"3 1 Success"_s,
                                                 u"5 1 -----"_s, u"6 2 -----"_s, u"9 2 -----"_s}));
}

TEST_F(OldSessionLogsTest, WhatIsNoSessionLogOfThePeriodIsPassedOver)
{
    const QByteArray text = "file size: 1\n";
    log(u"Backup/10-24-2026-10-00-00"_s, text);
    for (const char *name : {"10-23-2026-10-00-00", "11-24-2026-10-00-00", "11-23-2016-10-00-00",
                             "11-23-2026-10-00-00.txt", "11-23-2026-10-00-00\n", "11-22-2026-10-00-00.summary"})
        log(u"Backup/"_s + QString::fromLatin1(name), text);
    log(u"Backup/11-22-2026-10-00-00"_s, text);
    log(u"Backup/11-21-2026-10-00-00"_s, "nothing was done\n");
    QDir().mkpath(home.path(logs + u"Backup/11-20-2026-10-00-00"_s));
    ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(logs + u"Backup/11-19-2026-10-00-00"_s)).constData(), 0600),
              0);
    EXPECT_EQ(create(), 1);
    EXPECT_EQ(day(u"10-24-2026"_s), QStringList(u"1 1 -----"_s));
    EXPECT_EQ(QDir(home.path(logs + u"LOGXML"_s)).entryList(QDir::Files), QStringList(u"10-24-2026.xml"_s));
}

TEST_F(OldSessionLogsTest, TheFiftyFirstRecordIsTheLastAndNoDayFileIsWrittenOver)
{
    for (int back = 0; back < 20; ++back) {
        for (const char *hour : {"01", "02", "03"})
            log(u"Backup/"_s + LogFileNames::dayName(QDate(2026, 11, 23).addDays(-back)) + u'-' +
                    QString::fromLatin1(hour) + u"-00-00"_s,
                "file size: 1\n");
    }
    log(u"LOGXML/11-22-2026.xml"_s, "<records></records>\n");
    EXPECT_EQ(create(), 48);
    EXPECT_EQ(home.read(logs + u"LOGXML/11-22-2026.xml"_s), "<records></records>\n");
    EXPECT_EQ(day(u"11-07-2026"_s).size(), 3);
    EXPECT_EQ(day(u"11-06-2026"_s).size(), 0);
}

TEST_F(OldSessionLogsTest, WhatTheEndOfTheProgramCutsOffIsTakenUpByTheNextStart)
{
    UserDefaults defaults(home.path(u"defaults.plist"_s));
    const auto start = [&](const std::stop_token &stop) {
        return OldSessionLogs::createOnce(defaults, home.path(logs + u"LOGXML"_s), QDate(2026, 11, 23), stop);
    };
    log(u"Backup/11-22-2026-10-00-00"_s, "file size: 1\n");
    std::stop_source end;
    end.request_stop();
    EXPECT_EQ(start(end.get_token()), std::nullopt);
    EXPECT_FALSE(QDir(home.path(logs + u"LOGXML"_s)).exists());
    EXPECT_EQ(UserDefaults(defaults.path()).value(u"onlyonce"_s).toInt(), 0);
    EXPECT_EQ(start({}), 1);
    EXPECT_EQ(UserDefaults(defaults.path()).value(u"onlyonce"_s).toInt(), 1);
}
