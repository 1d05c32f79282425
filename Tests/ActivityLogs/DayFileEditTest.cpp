// What goes from a day file, and that nothing else does.

#include "Classes/ACTIVITY_LOGS/DayFileEdit.h"
#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Classes/ACTIVITY_LOGS/InProgressLogs.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"

#include "Platform/AtomicFile.h"
#include "Platform/StampedFile.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using DayFileEdit::Outcome;

namespace
{
QByteArray record(const QByteArray &uname, const QByteArray &datetime, const QByteArray &logfile,
                  const QByteArray &status = "Success")
{
    return "<record>\n\t<datetime>" + datetime + "</datetime>\n\t<uname>" + uname + "</uname>\n\t<status>" +
           status + "</status>\n\t<optype>1</optype>\n\t<logfile>" + logfile + "</logfile>\n</record>\n";
}

class DayFileEditTest : public testing::Test
{
protected:
    LogNodes nodes() const { return DayFile::read(home.read(file), u"09-24-2026"_s).value_or(LogNodes()); }
    /// Deletes ana's record of ten o'clock from a file with these bytes.
    Outcome deleteFrom(const QByteArray &bytes) const
    {
        home.write(file, bytes);
        LogNode node;
        node.uname = u"ana"_s;
        node.datetime = u"10:00"_s;
        node.optype = u"1"_s;
        node.logfile = u"/home/ana/1"_s;
        return DayFileEdit::removeRecords(file, {std::make_shared<LogNode>(node)});
    }
    mode_t mode() const
    {
        struct stat facts = {};
        return ::stat(QFile::encodeName(file).constData(), &facts) == 0 ? facts.st_mode & 07777 : 0;
    }

    TemporaryHome home;
    const QString folder = home.path(u"LOGXML"_s);
    const QString file = folder + u"/09-24-2026.xml"_s;
};
} // namespace

TEST_F(DayFileEditTest, OnlyTheRecordAndItsDoublesGo)
{
    const QByteArray ana = record("ana", "10:00", "/home/ana/1"), eva = record("eva", "10:00", "/home/eva/1");
    const QByteArray later = record("ana", "11:00", "/home/ana/2"),
                     twin = record("ana", "10:00", "/home/ana/3");
    struct Expected {
        Outcome outcome;
        QByteArray bytes; ///< null where the file is gone
    };
    const auto utf16 = [](const QByteArray &text) {
        const QString units = QChar(QChar::ByteOrderMark) + QString::fromUtf8(text);
        return QByteArray(reinterpret_cast<const char *>(units.utf16()), 2 * units.size());
    };
    const Row<QByteArray, Expected> rows[] = {
        {"others stay",
         "<records>" + eva + ana + later + "</records>\r\n",
         {Outcome::Rewritten, "<records>" + eva + later + "</records>\r\n"}},
        {"doubles of the user",
         "<records>\n" + twin + ana + eva + twin + "</records>",
         {Outcome::Rewritten, "<records>\n" + eva + "</records>"}},
        {"no line feed behind",
         "<records>" + ana.trimmed() + eva + "</records>",
         {Outcome::Rewritten, "<records>" + eva + "</records>"}},
        {"what nobody knows",
         "<records><new a='1'/>\n" + ana + "</records>",
         {Outcome::Rewritten, "<records><new a='1'/>\n</records>"}},
        {"two bytes a unit",
         utf16("<records>" + ana + eva + "</records>"),
         {Outcome::Rewritten, utf16("<records>\n" + eva + "</records>")}},
        {"the last one", "<?xml version='1.0'?>\n<records>\n" + ana + "</records>\n", {Outcome::Removed, {}}},
        {"only the twin is left",
         "<records>" + twin + "</records>",
         {Outcome::Untouched, "<records>" + twin + "</records>"}},
        {"damaged behind it", "<records>" + ana + "<", {Outcome::Failed, "<records>" + ana + "<"}},
    };
    forEachRow(rows, [&](const auto &row) {
        EXPECT_EQ(deleteFrom(row.given), row.expected.outcome);
        EXPECT_EQ(home.read(file), row.expected.bytes);
    });
    EXPECT_EQ(DayFileEdit::removeRecords(folder, {}), Outcome::Untouched) << "a folder";
}

TEST_F(DayFileEditTest, ARecordIsFoundAfterItsSessionLogHasGone)
{
    const QByteArray log = "/etc/hostname"; // as read it stands; later it is as if it were gone
    home.write(file, "<records>" + record("ana", "10:00", log) + record("", "", "Logs/1") + "</records>");
    LogNodes before = nodes();
    ASSERT_EQ(before.size(), 2u);
    before[0]->logfile = LogFileNames::belowHome(before[0]->logfile);
    EXPECT_EQ(DayFileEdit::removeRecords(file, before), Outcome::Removed);
}

TEST_F(DayFileEditTest, AFileThatChangesMeanwhileIsReadAnew)
{
    const QByteArray ana = record("ana", "10:00", "/home/ana/1"), eva = record("eva", "10:00", "/home/eva/1");
    const struct {
        const char *name;
        int changes;
        Outcome outcome;
        QByteArray bytes;
    } rows[] = {
        {"once", 1, Outcome::Rewritten, "<records>" + eva + "</records>"},
        {"without end", 99, Outcome::Failed, "<records>" + ana + eva + "</records>"},
    };
    forEachRow(rows, [&](const auto &row) {
        home.write(file, "<records>" + ana + "</records>");
        int changes = 0;
        const auto readWhileItChanges = [&](const QString &path, qint64 limit) {
            const auto bytes = AtomicFile::read(path, limit);
            EXPECT_TRUE(changes++ >= row.changes ||
                        AtomicFile::write(path, "<records>" + ana + eva + "</records>"));
            return bytes;
        };
        EXPECT_EQ(DayFileEdit::removeRecords(file, {nodes().front()}, readWhileItChanges), row.outcome);
        EXPECT_EQ(home.read(file), row.bytes);
    });
}

TEST_F(DayFileEditTest, RunningJobsGoFromFilesThatStoodThen)
{
    const QByteArray runs = record("eva", "1", "/home/eva/1", "In Progress"),
                     ended = record("ana", "2", "/home/ana/1");
    struct Expected {
        QByteArray bytes;
        QStringList logfiles;
    };
    const Row<QByteArray, Expected> rows[] = {
        {"of any user",
         "<records>\n" + runs + ended + "</records>\n",
         {"<records>\n" + ended + "</records>\n", {u"/home/eva/1"_s}}},
        {"the last", "<records>" + runs + "</records>", {"<records></records>", {u"/home/eva/1"_s}}},
        {"by its first status", "<r><record><status/><status>In Progress</status></record></r>", {}},
        {"not quite the word", "<r>" + record("a", "1", "x", "In Progress ") + "</r>", {}},
        {"part of a word", "<r><record><status>Not <b>In Progress</b></status></record></r>", {}},
        {"not below the root", "<r><x>" + runs + "</x></r>", {}},
        {"damaged", "<r>" + runs, {}},
    };
    forEachRow(rows, [&](const auto &row) {
        home.write(file, row.given);
        ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), 0640), 0);
        const auto before = FileStamp::of(file);
        EXPECT_EQ(InProgressLogs::removeInProgressLogsFromXML(folder, fileClockNow()), row.expected.logfiles);
        const bool isWritten = !row.expected.bytes.isNull();
        EXPECT_EQ(home.read(file), isWritten ? row.expected.bytes : row.given);
        EXPECT_EQ(mode(), mode_t(isWritten ? 0777 : 0640));
        EXPECT_EQ(before == FileStamp::of(file), !isWritten);
    });
}

TEST_F(DayFileEditTest, WhatCameAfterTheLossAndWhatIsNoDayFileStays)
{
    const QByteArray bytes = "<records>" + record("eva", "1", "/home/eva/1", "In Progress") + "</records>";
    home.write(file, bytes);
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder + u"/09-25-2026.xml"_s).constData(), 0600), 0);
    ASSERT_TRUE(QDir(folder).mkdir(u"09-26-2026.xml"_s));
    ASSERT_TRUE(QFile::link(home.path(u"elsewhere"_s), folder + u"/09-27-2026.xml"_s));
    home.write(u"elsewhere"_s, bytes);
    const auto lost = FileStamp::of(file)->modified - std::chrono::nanoseconds(1);
    EXPECT_EQ(InProgressLogs::removeInProgressLogsFromXML(folder, lost), QStringList());
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_EQ(InProgressLogs::removeInProgressLogsFromXML(folder, fileClockNow(), stopped.get_token()),
              QStringList());
    EXPECT_EQ(home.read(file), bytes);
    EXPECT_EQ(InProgressLogs::removeInProgressLogsFromXML(folder, fileClockNow()),
              QStringList{u"/home/eva/1"_s});
    EXPECT_EQ(home.read(u"elsewhere"_s), bytes);
    EXPECT_EQ(InProgressLogs::removeInProgressLogsFromXML({}, fileClockNow()), QStringList());
}
