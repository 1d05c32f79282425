#include "Platform/AtomicFile.h"
#include "Source/Logger/CVLogger.h"
#include "Source/Logger/InterfaceTraceWriters.h"
#include "Source/Logger/QNLogger.h"
#include "Source/Logger/TraceFile.h"
#include "Source/Logger/TraceLine.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"

#include "Platform/Home.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

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
    ASSERT_TRUE(AtomicFile::write(interfaceTrace(), {}));
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(u"x::Quillon"_s, true);
    expectMatches(home.read(interfaceTrace()), u" : x::corvane\n"_s);
}

TEST(Trace, TheLimitIsExactAndTakesTheLineThatPassesIt)
{
    const TemporaryHome home;
    home.write(monitorTrace(), QByteArray(512'000, 'x'));
    QNLogger::logMonitorTrace(std::nullopt);
    EXPECT_EQ(home.read(monitorTrace()).size(), 512'000);
    QNLogger::logMonitorTrace(u"one more"_s);
    EXPECT_EQ(home.read(monitorTrace()).size(), 0);

    home.write(monitorTrace(), QByteArray(512'001, 'x'));
    QNLogger::logMonitorTrace(std::nullopt);
    EXPECT_EQ(home.read(monitorTrace()).size(), 0);
}

TEST(Trace, AnEmptyMessageMeansOneThingToEachInterfaceWriter)
{
    const TemporaryHome home;
    home.write(interfaceTrace(), QByteArray(512'001, 'x'));
    CVTraceFileLogger::shared().logAppInterfaceTrace(QString(), true);
    EXPECT_EQ(home.read(interfaceTrace()).size(), 512'001);
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QString(), true);
    EXPECT_EQ(home.read(interfaceTrace()).size(), 0);

    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(u"kept"_s, false);
    EXPECT_EQ(home.read(interfaceTrace()).size(), 0) << "not asked to write yet";
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QString(), true);
    expectMatches(home.read(interfaceTrace()), u" : kept\n"_s);
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QString(51'200, u'y'), false);
    EXPECT_GT(home.read(interfaceTrace()).size(), 51'200) << "a full buffer is written unasked";
}

TEST(Trace, WhatCannotBeWrittenIsDroppedAndNothingHangs)
{
    const TemporaryHome home;
    home.write(u"blocked"_s, "a file where a folder should be");
    TraceFile::append(home.path(u"blocked/trace"_s), u"x"_s);
    EXPECT_EQ(home.read(u"blocked"_s), "a file where a folder should be");

    const QByteArray pipe = QFile::encodeName(home.path(u"pipe"_s));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    TraceFile::append(home.path(u"pipe"_s), u"nobody reads this"_s);
    TraceFile::clearLogs(home.path(u"pipe"_s));
}

TEST(Trace, LinesOfManyThreadsStayWhole)
{
    const TemporaryHome home;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n < 200; ++n) {
                if (i % 2)
                    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(u"line"_s, true);
                else
                    CVTraceFileLogger::shared().logAppInterfaceTrace(u"line"_s, true);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    const QList<QByteArray> lines = home.read(interfaceTrace()).split('\n');
    ASSERT_EQ(lines.size(), 801);
    for (qsizetype i = 0; i < 800; ++i)
        ASSERT_TRUE(lines.at(i).trimmed().endsWith(" : line")) << lines.at(i).toStdString();
}

namespace
{
struct Console {
    ManualClock clock{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};
    QStringList lines;
    CVLogger logger{[this](const QString &line) { lines.append(line); }, clock};
};
} // namespace

TEST(ConsoleLogger, AsShippedEveryCallIsOneFixedLine)
{
    Console console;
    console.logger.options.keepTracking = true;
    console.logger.error(u"id"_s, u"secret"_s);
    console.logger.trace();
    const QString fixed =
        u"Printer can't logs as RELEASE mode is active and you have set 'printOnlyIfDebugMode' to 'true'."_s;
    EXPECT_EQ(console.lines, QStringList({fixed, fixed}));
    console.lines.clear();
    console.logger.all(true);
    EXPECT_EQ(console.lines.value(0), u"No tracked logs. To track logs, you need to set 'keepTracking' to "
                                      u"'true' and 'disable' is not set to 'true'."_s);
    console.lines.clear();
    console.logger.options.disable = true;
    console.logger.error(u"id"_s, u"secret"_s);
    EXPECT_TRUE(console.lines.isEmpty());
}

TEST(ConsoleLogger, FormsOfAnEntry)
{
    const std::tuple<const char *, LogType, QString, QString, bool, QString> rows[] = {
        {"full", LogType::success, u"7"_s, u"done"_s, false,
         u"[✅ Success] [⌚03-04-2026 05: 06: 07] [🆔 7] ➞ ✹✹done✹✹"_s},
        {"full without an id or a time", LogType::alert, {}, u"x"_s, true, u"[🚨 Alert]  ➞ ✹✹x✹✹"_s},
        {"full without details", LogType::warning, u"7"_s, {}, true, u"[🚧 Warning] [🆔 7]"_s},
        {"plain", LogType::plain, u"7"_s, u"done"_s, false,
         u"[03-04-2026 05: 06: 07]  ID ➞ 7 Details ➞ done"_s},
    };
    for (const auto &[name, type, id, details, hideTime, expected] : rows) {
        SCOPED_TRACE(name);
        Console console;
        console.logger.options.printOnlyIfDebugMode = false;
        console.logger.options.keepAutoTracing = false;
        console.logger.options.hideLogsTime = hideTime;
        console.logger.show(id, details, type);
        EXPECT_EQ(console.lines, QStringList(expected));
    }
}

TEST(ConsoleLogger, FiltersTracksAndTraces)
{
    Console console;
    auto &options = console.logger.options;
    options.printOnlyIfDebugMode = false;
    options.keepTracking = true;
    options.filterLogs = {LogType::error};
    console.logger.success(u"passed over"_s);
    console.logger.error(u"kept"_s);
    ASSERT_EQ(console.logger.getAllLogs().size(), 1U);
    EXPECT_TRUE(console.lines.value(1).startsWith(u"[Trace] ➞ TraceTest.cpp ➞ "_s));
    EXPECT_TRUE(console.logger.getAllLogs({LogType::success}).empty());
    options.filterFiles = {u"TraceTest.cpp"_s};
    console.logger.error(u"from a filtered file"_s);
    EXPECT_EQ(console.logger.getAllLogs().size(), 1U);
}
