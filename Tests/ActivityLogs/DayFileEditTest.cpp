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

QByteArray utf16(const QByteArray &text)
{
    const QString units = QChar(QChar::ByteOrderMark) + QString::fromUtf8(text);
    return {reinterpret_cast<const char *>(units.utf16()), 2 * units.size()};
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
    QStringList cleanUp(const std::stop_token &stop = {}) const
    {
        return InProgressLogs::removeInProgressLogsFromXML(folder, fileClockNow(), stop);
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
    const Row<QByteArray, Expected> rows[] = {
        {"others stay",
         "<r>" + eva + ana + later + "</r>\r\n",
         {Outcome::Rewritten, "<r>" + eva + later + "</r>\r\n"}},
        {"doubles of the user",
         "<r>" + twin + ana + eva + twin + "</r>",
         {Outcome::Rewritten, "<r>" + eva + "</r>"}},
        {"nothing between", "<r>" + ana.trimmed() + eva + "</r>", {Outcome::Rewritten, "<r>" + eva + "</r>"}},
        {"what nobody knows",
         "<r><new a='1'/>\n" + ana + "</r>",
         {Outcome::Rewritten, "<r><new a='1'/>\n</r>"}},
        {"two bytes a unit",
         utf16("<r>" + ana + eva + "</r>"),
         {Outcome::Rewritten, utf16("<r>\n" + eva + "</r>")}},
        {"the last one", "<?xml version='1.0'?>\n<records>\n" + ana + "</records>\n", {Outcome::Removed, {}}},
        {"only the twin is left", "<r>" + twin + "</r>", {Outcome::Untouched, "<r>" + twin + "</r>"}},
        {"damaged behind it", "<r>" + ana + "<", {Outcome::Failed, "<r>" + ana + "<"}},
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
    const Row<int, std::pair<Outcome, QByteArray>> rows[] = {
        {"once", 1, {Outcome::Rewritten, eva}},
        {"without end", 99, {Outcome::Failed, ana + eva}},
    };
    forEachRow(rows, [&](const auto &row) {
        home.write(file, "<r>" + ana + "</r>");
        int changes = 0;
        const auto readWhileItChanges = [&](const QString &path, qint64 limit) {
            const auto bytes = AtomicFile::read(path, limit);
            EXPECT_TRUE(changes++ >= row.given || AtomicFile::write(path, "<r>" + ana + eva + "</r>"));
            return bytes;
        };
        EXPECT_EQ(DayFileEdit::removeRecords(file, {nodes().front()}, readWhileItChanges), row.expected.first);
        EXPECT_EQ(home.read(file), "<r>" + row.expected.second + "</r>");
    });
}

TEST_F(DayFileEditTest, RunningJobsGoFromFilesThatStoodThen)
{
    const QByteArray runs = record("eva", "1", "/home/eva/1", "In Progress"),
                     ended = record("ana", "2", "/home/ana/1");
    const Row<QByteArray, QByteArray> rows[] = {
        // null where the file stays as it is
        {"of any user", "<r>\n" + runs + ended + "</r>\n", "<r>\n" + ended + "</r>\n"},
        {"the last", "<r>" + runs + "</r>", "<r></r>"},
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
        const bool isWritten = !row.expected.isNull();
        EXPECT_EQ(cleanUp(), isWritten ? QStringList{u"/home/eva/1"_s} : QStringList());
        EXPECT_EQ(home.read(file), isWritten ? row.expected : row.given);
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
    EXPECT_EQ(cleanUp(stopped.get_token()), QStringList());
    EXPECT_EQ(home.read(file), bytes);
    EXPECT_EQ(cleanUp(), QStringList{u"/home/eva/1"_s});
    EXPECT_EQ(home.read(u"elsewhere"_s), bytes);
    EXPECT_EQ(InProgressLogs::removeInProgressLogsFromXML({}, fileClockNow()), QStringList());
}
