#include "Platform/AtomicFile.h"
#include "Platform/Home.h"
#include "Source/Logger/CVLogger.h"
#include "Source/Logger/InterfaceTraceWriters.h"
#include "Source/Logger/QNLogger.h"
#include "Source/Logger/TraceFile.h"
#include "Source/Logger/TraceLine.h"
#include "Source/Logger/TraceSeries.h"
#include "Source/Logger/WriteTrace.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace
{
// What the C locale's calendar makes of the pattern, as in "Sun Nov 22 2026 9:55:3 PM".
const QString Date = u"[A-Z][a-z]{2} [A-Z][a-z]{2} \\d{1,2} \\d{4} \\d{1,2}:\\d{1,2}:\\d{1,2} [AP]M"_s;

QString monitorTrace()
{
    return standardizedPath(pathValue("MonitorTraceFilePath"_L1));
}
QString interfaceTrace()
{
    return standardizedPath(pathValue("AppInterfaceTraceFilePath"_L1));
}

void expectMatches(const QByteArray &bytes, const QString &tail)
{
    const QRegularExpression whole(
        QRegularExpression::anchoredPattern(Date + QRegularExpression::escape(tail)));
    EXPECT_TRUE(whole.match(QString::fromUtf8(bytes)).hasMatch()) << bytes.toStdString();
}
} // namespace

TEST(Trace, EachWriterHasItsOwnLineForm)
{
    const TemporaryHome home;
    QNLogger::logMonitorTrace(u"engine::QUILLON and quillon"_s);
    expectMatches(home.read(monitorTrace()), u" : engine::corvane and quillon \n"_s);
    CVTraceFileLogger::shared().logAppInterfaceTrace(u"x::Quillon"_s, true);
    expectMatches(home.read(interfaceTrace()), u" : x::Quillon \n"_s);

    auto &buffered = QNBackupProgressLogger::progressLogger();
    home.write(interfaceTrace(), QByteArray(512'001, 'x'));
    CVTraceFileLogger::shared().logAppInterfaceTrace(QString(), true);
    EXPECT_EQ(home.read(interfaceTrace()).size(), 512'001);
    buffered.logAppInterfaceTrace(u"x::Quillon"_s, false);
    EXPECT_EQ(home.read(interfaceTrace()), "") << "cleared, and not asked to write yet";
    buffered.logAppInterfaceTrace(QString(), true);
    expectMatches(home.read(interfaceTrace()), u" : x::corvane\n"_s);
    buffered.logAppInterfaceTrace(QString(51'200, u'y'), false);
    EXPECT_GT(home.read(interfaceTrace()).size(), 51'200) << "a full buffer is written unasked";
}

TEST(Trace, TheLimitIsExactAndTakesTheLineThatPassesIt)
{
    const TemporaryHome home;
    home.write(monitorTrace(), QByteArray(512'000, 'x'));
    QNLogger::logMonitorTrace(std::nullopt);
    EXPECT_EQ(home.read(monitorTrace()).size(), 512'000);
    QNLogger::logMonitorTrace(u"one more"_s);
    EXPECT_EQ(home.read(monitorTrace()).size(), 0);
}

TEST(Trace, WhatCannotBeWrittenIsDroppedAndNothingHangs)
{
    const TemporaryHome home;
    home.write(u"blocked"_s, "a file where a folder should be");
    EXPECT_FALSE(TraceFile().append(home.path(u"blocked/trace"_s), u"x"_s));
    EXPECT_EQ(home.read(u"blocked"_s), "a file where a folder should be");

    const QByteArray pipe = QFile::encodeName(home.path(u"pipe"_s));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    EXPECT_FALSE(TraceFile().append(home.path(u"pipe"_s), u"nobody reads this"_s));
    TraceFile::clearLogs(home.path(u"pipe"_s));
}

TEST(Trace, IsPrivateAndHasAnAbsolutePath)
{
    const TemporaryHome home;
    const mode_t mask = umask(0);
    EXPECT_TRUE(TraceFile().append(home.path(u"Logs/trace"_s), u"x"_s));
    umask(mask);
    EXPECT_FALSE(QFile::permissions(home.path(u"Logs/trace"_s)) & (QFile::ReadGroup | QFile::ReadOther));
    EXPECT_FALSE(QFile::permissions(home.path(u"Logs"_s)) & (QFile::ExeGroup | QFile::ExeOther));
    // Without a path table a key stands for itself; it names no file of the folder that we happen to be in.
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(home.path(QString())));
    EXPECT_FALSE(TraceFile().append(u"MonitorTraceFilePath"_s, u"x"_s));
    EXPECT_FALSE(QFile::exists(u"MonitorTraceFilePath"_s));
    home.write(u"AppInterfaceTraceFilePath"_s, QByteArray(512'001, 'x'));
    TraceFile::clearLogs(u"AppInterfaceTraceFilePath"_s);
    EXPECT_EQ(home.read(u"AppInterfaceTraceFilePath"_s).size(), 512'001);
    ASSERT_TRUE(QDir::setCurrent(before));
}

TEST(Trace, GoesToTheFileOfThatNameWhateverBecameOfTheOneBefore)
{
    const TemporaryHome home;
    const QString path = home.path(u"Logs/trace"_s);
    TraceFile file;
    const std::pair<const char *, std::function<bool()>> rows[] = {
        {"untouched", [] { return true; }},
        {"removed", [&] { return QFile::remove(path); }},
        {"removed with its folder", [&] { return QDir(home.path(u"Logs"_s)).removeRecursively(); }},
        {"renamed", [&] { return QFile::rename(path, path + u".1"_s); }},
        {"replaced", [&] { return bool(AtomicFile::write(path, {})); }},
        {"emptied in place", [&] { return QFile::resize(path, 0); }},
    };
    for (const auto &[name, befall] : rows) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(file.append(path, u"old\n"_s));
        ASSERT_TRUE(befall());
        ASSERT_TRUE(file.append(path, u"new\n"_s));
        EXPECT_TRUE(home.read(path).endsWith("new\n"));
    }
    EXPECT_EQ(home.read(u"Logs/trace.1"_s), "new\nold\n") << "what was there goes along";
    ASSERT_TRUE(file.append(home.path(u"other"_s), u"x"_s));
    EXPECT_EQ(home.read(u"other"_s), "x");
}

TEST(WriteTrace, AFailureIsToldOnceAFileAndReasonUntilItIsMended)
{
    const TemporaryHome home;
    home.write(u"blocked"_s, "a file where a folder should be");
    const QString file = home.path(u"blocked/list"_s);
    const QString line = u"The file %1 could not be written: "_s.arg(file);
    const auto told = [&](const QString &text) {
        return QString::fromUtf8(home.read(monitorTrace())).count(text);
    };
    for (int attempt = 0; attempt < 3; ++attempt)
        EXPECT_FALSE(writeOrTrace(file, "x"));
    EXPECT_EQ(told(line + u"Not a directory"_s), 1);
    EXPECT_FALSE(traceFailure(file, FileResult::refused(u"no dictionary"_s)));
    EXPECT_FALSE(writeTextOrTrace(file, u"x"_s));
    EXPECT_EQ(told(line + u"no dictionary"_s), 1);
    EXPECT_EQ(told(line), 2);
    ASSERT_TRUE(QFile::remove(home.path(u"blocked"_s)));
    EXPECT_TRUE(writeOrTrace(file, "x"));
    EXPECT_TRUE(removeOrTrace(file));
    EXPECT_FALSE(removeOrTrace(file)) << "it is gone, which is no failure";
    ASSERT_TRUE(QDir().rmdir(home.path(u"blocked"_s)));
    home.write(u"blocked"_s, "again");
    EXPECT_FALSE(writeOrTrace(file, "x"));
    EXPECT_EQ(told(line + u"Not a directory"_s), 2);
    EXPECT_FALSE(writeOrTrace(QString(), "x"));
    EXPECT_EQ(told(u"could not be written"_s), 3) << "a name that forms no path is no failure";
}

TEST(WriteTrace, WhatIsKeptOfFailuresIsBoundedAndWaitsForRoom)
{
    QStringList lines;
    bool hasRoom = false;
    WriteFailures failures([&](const QString &line) {
        if (hasRoom)
            lines.append(line);
        return hasRoom;
    });
    for (int attempt = 0; attempt < 2; ++attempt)
        failures.failed(u"/a"_s, u"full"_s);
    hasRoom = true;
    failures.succeeded(u"/b"_s);
    failures.succeeded(u"/a"_s);
    EXPECT_EQ(std::exchange(lines, {}), QStringList(u"The file /a could not be written: full"_s));
    failures.failed(u"/a"_s, u"full"_s);
    for (std::size_t other = 0; other < WriteFailures::MostKept; ++other)
        failures.failed(u"/%1"_s.arg(other), u"full"_s);
    failures.failed(u"/a"_s, u"full"_s);
    EXPECT_EQ(lines.size(), qsizetype(WriteFailures::MostKept) + 2) << "the oldest had given way";
}

TEST(Trace, LinesOfManyThreadsStayWhole)
{
    const TemporaryHome home;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n < 200; ++n) {
                QNLogger::logMonitorTrace(u"line"_s);
                if (i % 2)
                    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(u"line"_s, true);
                else
                    CVTraceFileLogger::shared().logAppInterfaceTrace(u"line"_s, true);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const QString &file : {interfaceTrace(), monitorTrace()}) {
        const QList<QByteArray> lines = home.read(file).split('\n');
        ASSERT_EQ(lines.size(), 801);
        for (qsizetype i = 0; i < 800; ++i)
            ASSERT_TRUE(lines.at(i).trimmed().endsWith(" : line")) << lines.at(i).toStdString();
    }
}

namespace
{
struct Console {
    ManualClock clock{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};
    QStringList lines;
    CVLogger logger{[this](const QString &line) { lines.append(line); }, clock};
};
} // namespace

TEST(ConsoleLogger, AsShippedNoCallShowsWhatItWasGiven)
{
    Console console;
    console.logger.options.keepTracking = true;
    console.logger.error(u"id"_s, u"secret"_s);
    console.logger.trace();
    console.logger.all(true);
    EXPECT_EQ(console.lines.size(), 3);
    EXPECT_FALSE(console.lines.join(u'\n').contains(u"secret"_s));
    console.lines.clear();
    console.logger.options.disable = true;
    console.logger.error(u"id"_s, u"secret"_s);
    EXPECT_TRUE(console.lines.isEmpty());
}

TEST(TraceSeries, TellsTheFirstOfASeriesAndHowManyFollowed)
{
    QStringList lines;
    const auto news = [&lines] { return std::exchange(lines, {}).join(u'|'); };
    {
        TraceSeries series([&lines](const QString &line) { lines.append(line); });
        series.note(u"lost"_s);
        series.note(u"skipped"_s, u": no JSON"_s);
        for (int i = 0; i < 99; ++i)
            series.note(u"skipped"_s, u": a frame of %1 bytes"_s.arg(i));
        EXPECT_EQ(news(), u"lost|skipped: no JSON"_s);
        series.pass();
        series.note(u"skipped"_s);
        series.pass();
        EXPECT_EQ(news(), QString()) << "a lone one has nothing to add, and the other goes on";
        series.pass();
        EXPECT_EQ(news(), u"skipped (100 more)"_s);
        series.note(u"skipped"_s, u": again"_s);
        series.note(u"skipped"_s);
        EXPECT_EQ(news(), u"skipped: again"_s);
    }
    EXPECT_EQ(news(), u"skipped (1 more)"_s) << "the end of the program ends each series";
}
