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

namespace
{
// What the C locale's calendar makes of the pattern, as in "Sun Nov 22 2026 9:55:3 PM".
const QString Date =
    QStringLiteral("[A-Z][a-z]{2} [A-Z][a-z]{2} \\d{1,2} \\d{4} \\d{1,2}:\\d{1,2}:\\d{1,2} [AP]M");

QString monitorTrace()
{
    return standardizedPath(pathValue(QLatin1String("MonitorTraceFilePath")));
}
QString interfaceTrace()
{
    return standardizedPath(pathValue(QLatin1String("AppInterfaceTraceFilePath")));
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
    QNLogger::logMonitorTrace(QStringLiteral("engine::QUILLON and quillon"));
    expectMatches(home.read(monitorTrace()), QStringLiteral(" : engine::corvane and quillon \n"));

    CVTraceFileLogger::shared().logAppInterfaceTrace(QStringLiteral("x::Quillon"), true);
    expectMatches(home.read(interfaceTrace()), QStringLiteral(" : x::Quillon \n"));
    ASSERT_TRUE(AtomicFile::write(interfaceTrace(), {}));
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QStringLiteral("x::Quillon"), true);
    expectMatches(home.read(interfaceTrace()), QStringLiteral(" : x::corvane\n"));
}

TEST(Trace, TheLimitIsExactAndTakesTheLineThatPassesIt)
{
    const TemporaryHome home;
    home.write(monitorTrace(), QByteArray(512'000, 'x'));
    QNLogger::logMonitorTrace(std::nullopt);
    EXPECT_EQ(home.read(monitorTrace()).size(), 512'000);
    QNLogger::logMonitorTrace(QStringLiteral("one more"));
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

    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QStringLiteral("kept"), false);
    EXPECT_EQ(home.read(interfaceTrace()).size(), 0) << "not asked to write yet";
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QString(), true);
    expectMatches(home.read(interfaceTrace()), QStringLiteral(" : kept\n"));
}

TEST(Trace, AFullBufferIsWrittenUnasked)
{
    const TemporaryHome home;
    CVTraceFileLogger::shared().logAppInterfaceTrace(QString(51'200, u'y'), false);
    EXPECT_GT(home.read(interfaceTrace()).size(), 51'200);
}

TEST(Trace, WhatCannotBeWrittenIsDroppedAndNothingHangs)
{
    const TemporaryHome home;
    home.write(QStringLiteral("blocked"), "a file where a folder should be");
    TraceFile::append(home.path(QStringLiteral("blocked/trace")), QStringLiteral("x"));
    EXPECT_EQ(home.read(QStringLiteral("blocked")), "a file where a folder should be");

    const QByteArray pipe = QFile::encodeName(home.path(QStringLiteral("pipe")));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    TraceFile::append(home.path(QStringLiteral("pipe")), QStringLiteral("nobody reads this"));
    TraceFile::clearLogs(home.path(QStringLiteral("pipe")));
}

TEST(Trace, LinesOfManyThreadsStayWhole)
{
    const TemporaryHome home;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n < 200; ++n) {
                if (i % 2)
                    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(QStringLiteral("line"), true);
                else
                    CVTraceFileLogger::shared().logAppInterfaceTrace(QStringLiteral("line"), true);
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
    console.logger.error(QStringLiteral("id"), QStringLiteral("secret"));
    console.logger.trace();
    const QString fixed = QStringLiteral(
        "Printer can't logs as RELEASE mode is active and you have set 'printOnlyIfDebugMode' to 'true'.");
    EXPECT_EQ(console.lines, QStringList({fixed, fixed}));
    console.lines.clear();
    console.logger.all(true);
    EXPECT_EQ(console.lines.value(0),
              QStringLiteral("No tracked logs. To track logs, you need to set 'keepTracking' to "
                             "'true' and 'disable' is not set to 'true'."));
    console.lines.clear();
    console.logger.options.disable = true;
    console.logger.error(QStringLiteral("id"), QStringLiteral("secret"));
    EXPECT_TRUE(console.lines.isEmpty());
}

TEST(ConsoleLogger, FormsOfAnEntry)
{
    const struct {
        const char *name;
        LogType type;
        QString id;
        QString details;
        bool hideTime;
        QString expected;
    } rows[] = {
        {"full", LogType::success, QStringLiteral("7"), QStringLiteral("done"), false,
         QString::fromUtf8("[✅ Success] [⌚03-04-2026 05: 06: 07] [🆔 7] ➞ ✹✹done✹✹")},
        {"full without an id or a time",
         LogType::alert,
         {},
         QStringLiteral("x"),
         true,
         QString::fromUtf8("[🚨 Alert]  ➞ ✹✹x✹✹")},
        {"full without details",
         LogType::warning,
         QStringLiteral("7"),
         {},
         true,
         QString::fromUtf8("[🚧 Warning] [🆔 7]")},
        {"plain", LogType::plain, QStringLiteral("7"), QStringLiteral("done"), false,
         QString::fromUtf8("[03-04-2026 05: 06: 07]  ID ➞ 7 Details ➞ done")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Console console;
        console.logger.options.printOnlyIfDebugMode = false;
        console.logger.options.keepAutoTracing = false;
        console.logger.options.hideLogsTime = row.hideTime;
        console.logger.show(row.id, row.details, row.type);
        EXPECT_EQ(console.lines, QStringList(row.expected));
    }
}

TEST(ConsoleLogger, FiltersTracksAndTraces)
{
    Console console;
    auto &options = console.logger.options;
    options.printOnlyIfDebugMode = false;
    options.keepTracking = true;
    options.filterLogs = {LogType::error};
    console.logger.success(QStringLiteral("passed over"));
    console.logger.error(QStringLiteral("kept"));
    ASSERT_EQ(console.logger.getAllLogs().size(), 1U);
    EXPECT_TRUE(console.lines.value(1).startsWith(QString::fromUtf8("[Trace] ➞ TraceTest.cpp ➞ ")));
    EXPECT_TRUE(console.logger.getAllLogs({LogType::success}).empty());
    options.filterFiles = {QStringLiteral("TraceTest.cpp")};
    console.logger.error(QStringLiteral("from a filtered file"));
    EXPECT_EQ(console.logger.getAllLogs().size(), 1U);
}
