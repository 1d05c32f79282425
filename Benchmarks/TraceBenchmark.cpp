// Trace lines per second, beside a bare loop that opens a file, appends the same bytes and closes it. Both
// write to a file that stands; the folder is made once in the life of an account.
#include "Source/Logger/QNLogger.h"
#include "Utility/Paths/PathTable.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Lines = 4000; // stays below the size at which a trace file is emptied

/// A home that has a trace file.
class TracedHome
{
public:
    TracedHome()
    {
        qputenv("HOME", QFile::encodeName(m_folder.path()));
        QNLogger::logMonitorTrace(u"The first line"_s);
    }
    [[nodiscard]] QString traceFile() const { return pathValue("MonitorTraceFilePath"_L1, {}); }

private:
    QTemporaryDir m_folder;
};

/// Whether all lines are there: one that is dropped costs nothing.
void finish(benchmark::State &state, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.readAll().count('\n') < Lines)
        state.SkipWithError("lines are missing");
    state.SetItemsProcessed(state.iterations());
}

void traceLines(benchmark::State &state)
{
    const TracedHome home;
    for (auto _ : state)
        QNLogger::logMonitorTrace(u"Start of the measured line"_s);
    finish(state, home.traceFile());
}

void bareOpenAppendClose(benchmark::State &state)
{
    const TracedHome home;
    const QString path = home.traceFile();
    const QByteArray name = QFile::encodeName(path);
    const QByteArray line = "Sun Nov 22 2026 9:55:53 PM : Start of the measured line \n";
    for (auto _ : state) {
        const int file = open(name.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
        benchmark::DoNotOptimize(write(file, line.constData(), static_cast<size_t>(line.size())));
        close(file);
    }
    finish(state, path);
}

BENCHMARK(traceLines)->Iterations(Lines)->Repetitions(15)->ReportAggregatesOnly();
BENCHMARK(bareOpenAppendClose)->Iterations(Lines)->Repetitions(15)->ReportAggregatesOnly();
} // namespace

BENCHMARK_MAIN();
