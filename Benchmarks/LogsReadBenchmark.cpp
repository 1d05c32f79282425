// Day files into records, beside bare expat over the same bytes, and the memory that a list of years takes; the
// clean-up of a folder in which nothing is to be removed, beside reading its files.
#include "Benchmarks/LogYears.h"
#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Classes/ACTIVITY_LOGS/InProgressLogs.h"
#include "Platform/StampedFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int FolderFiles = 10'000;
const QString LogFolder = u"/home/ana/.local/share/Corvane/SessionLogs/Backup"_s;

struct NamedBytes {
    QString key;
    QByteArray bytes;
};

/// The files of three years, in memory: what is measured is not the disk.
const std::vector<NamedBytes> &years()
{
    static const std::vector<NamedBytes> files = [] {
        std::vector<NamedBytes> made;
        for (int i = 0; i < LogYears::Days; ++i) {
            const QDate day = LogYears::Today.addDays(-i);
            for (const char *ending : LogYears::Endings)
                made.push_back({day.toString(u"MM-dd-yyyy") + QString::fromLatin1(ending),
                                LogYears::dayFile(day, ending, LogYears::RecordsAFile, LogFolder)});
        }
        return made;
    }();
    return files;
}

qint64 bytesOfYears()
{
    qint64 sum = 0;
    for (const NamedBytes &file : years())
        sum += file.bytes.size();
    return sum;
}

void readDayFiles(benchmark::State &state)
{
    const qint64 bytes = bytesOfYears();
    double perByte = 0;
    for (auto _ : state) {
        const auto before = qint64(mallinfo2().uordblks);
        std::vector<LogNodes> list;
        std::size_t records = 0;
        for (const NamedBytes &file : years()) {
            list.push_back(DayFile::read(file.bytes, file.key).value_or(LogNodes()));
            records += list.back().size();
        }
        if (records != std::size_t(3 * LogYears::Days * LogYears::RecordsAFile))
            state.SkipWithError("records are missing");
        state.PauseTiming();
        perByte = double(qint64(mallinfo2().uordblks) - before) / double(bytes);
        list.clear();
        state.ResumeTiming();
    }
    state.counters["memory/bytes"] = perByte;
    state.SetItemsProcessed(state.iterations() * 3 * LogYears::Days);
    state.SetBytesProcessed(state.iterations() * bytes);
}

void bareExpat(benchmark::State &state)
{
    const qint64 bytes = bytesOfYears();
    for (auto _ : state) {
        qint64 seen = 0;
        for (const NamedBytes &file : years()) {
            if (!LogYears::parseWithBareExpat(file.bytes, seen))
                state.SkipWithError("a file is damaged");
        }
        benchmark::DoNotOptimize(seen);
    }
    state.SetItemsProcessed(state.iterations() * 3 * LogYears::Days);
    state.SetBytesProcessed(state.iterations() * bytes);
}

/// A folder of old day files, none with a job that runs.
const QString &fullFolder()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        for (int i = 0; i < FolderFiles; ++i) {
            const QDate day = LogYears::Today.addDays(-i);
            QFile file(folder.filePath(day.toString(u"MM-dd-yyyy") + u".xml"_s));
            if (!file.open(QIODevice::WriteOnly) ||
                file.write(LogYears::dayFile(day, "", LogYears::RecordsAFile, LogFolder)) < 0)
                qFatal("no room for the files");
        }
        return folder.path();
    }();
    return path;
}

void cleanUpOfNothing(benchmark::State &state)
{
    const QString &folder = fullFolder();
    for (auto _ : state) {
        if (!InProgressLogs::removeInProgressLogsFromXML(folder, fileClockNow()).isEmpty())
            state.SkipWithError("something went");
    }
    state.SetItemsProcessed(state.iterations() * FolderFiles);
}

void readingTheSameFiles(benchmark::State &state)
{
    const QString &folder = fullFolder();
    for (auto _ : state) {
        qint64 bytes = 0;
        QDirIterator files(folder, {u"*.xml"_s}, QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                bytes += file.readAll().size();
        }
        benchmark::DoNotOptimize(bytes);
    }
    state.SetItemsProcessed(state.iterations() * FolderFiles);
}

BENCHMARK(readDayFiles)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9)->ReportAggregatesOnly();
BENCHMARK(bareExpat)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9)->ReportAggregatesOnly();
BENCHMARK(cleanUpOfNothing)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(9)
    ->ReportAggregatesOnly();
BENCHMARK(readingTheSameFiles)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(9)
    ->ReportAggregatesOnly();
} // namespace

BENCHMARK_MAIN();
