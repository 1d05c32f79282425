// Day files into records, beside bare expat over the same bytes, and the memory that a list of years takes; the
// clean-up of a folder in which nothing is to be removed, beside reading its files.
#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Classes/ACTIVITY_LOGS/InProgressLogs.h"
#include "Platform/StampedFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <expat.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Days = 1'100;
constexpr int RecordsAFile = 31; // of which a year of three files a day makes 34,000
constexpr int FolderFiles = 10'000;
const char *const Endings[] = {"_cdp", "_sync", ""};
const char *const Results[] = {"Success", "Success", "Failure", "Success", "Aborted"};

QByteArray dayFile(QDate day, const QByteArray &ending, int records)
{
    const QByteArray name = day.toString(u"MM-dd-yyyy").toLatin1();
    LogNodes nodes;
    for (int i = 0; i < records; ++i) {
        auto node = std::make_shared<LogNode>();
        const QTime time = QTime(0, 0).addSecs(i * 2700 + day.dayOfYear());
        node->datetime = QString::fromLatin1(name) + time.toString(u" HH:mm:ss");
        node->uname = i % 7 ? u"ana@example.com"_s : u"eva@example.com"_s;
        node->files = QString::number(i * 37 % 500);
        node->filesinsync = QString::number(i * 11 % 90);
        node->status = QString::fromLatin1(Results[(i + day.day()) % 5]);
        node->duration = QTime(0, 0).addSecs(i * 97 % 4000).toString(u"HH:mm:ss");
        node->optype = ending == "_cdp" ? u"7"_s : ending == "_sync" ? u"12"_s : QString::number(1 + i % 3);
        node->logfile = u"/home/ana/.local/share/Corvane/SessionLogs/Backup/"_s + QString::fromLatin1(name) +
                        time.toString(u"-HH-mm-ss");
        node->logname = QString::fromLatin1(name + ending);
        nodes.push_back(std::move(node));
    }
    return DayFile::getXMLfromNodes(nodes).toUtf8();
}

struct NamedBytes {
    QString key;
    QByteArray bytes;
};

/// The files of three years, in memory: what is measured is not the disk.
const std::vector<NamedBytes> &years()
{
    static const std::vector<NamedBytes> files = [] {
        std::vector<NamedBytes> made;
        for (int i = 0; i < Days; ++i) {
            const QDate day = QDate(2026, 11, 23).addDays(-i);
            for (const QByteArray ending : Endings)
                made.push_back({day.toString(u"MM-dd-yyyy") + QString::fromLatin1(ending),
                                dayFile(day, ending, RecordsAFile)});
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
        if (records != std::size_t(3 * Days * RecordsAFile))
            state.SkipWithError("records are missing");
        state.PauseTiming();
        perByte = double(qint64(mallinfo2().uordblks) - before) / double(bytes);
        list.clear();
        state.ResumeTiming();
    }
    state.counters["memory/bytes"] = perByte;
    state.SetItemsProcessed(state.iterations() * 3 * Days);
    state.SetBytesProcessed(state.iterations() * bytes);
}

/// The parser with handlers that only look.
void bareExpat(benchmark::State &state)
{
    const qint64 bytes = bytesOfYears();
    for (auto _ : state) {
        qint64 seen = 0;
        for (const NamedBytes &file : years()) {
            XML_Parser parser = XML_ParserCreate(nullptr);
            XML_SetUserData(parser, &seen);
            XML_SetElementHandler(
                parser, [](void *data, const char *, const char **) { ++*static_cast<qint64 *>(data); },
                [](void *data, const char *) { ++*static_cast<qint64 *>(data); });
            XML_SetCharacterDataHandler(
                parser, [](void *data, const char *, int length) { *static_cast<qint64 *>(data) += length; });
            if (XML_Parse(parser, file.bytes.data(), int(file.bytes.size()), XML_TRUE) != XML_STATUS_OK)
                state.SkipWithError("a file is damaged");
            XML_ParserFree(parser);
        }
        benchmark::DoNotOptimize(seen);
    }
    state.SetItemsProcessed(state.iterations() * 3 * Days);
    state.SetBytesProcessed(state.iterations() * bytes);
}

/// A folder of old day files, none with a job that runs.
const QString &fullFolder()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        for (int i = 0; i < FolderFiles; ++i) {
            const QDate day = QDate(2026, 11, 23).addDays(-i);
            QFile file(folder.filePath(day.toString(u"MM-dd-yyyy") + u".xml"_s));
            if (!file.open(QIODevice::WriteOnly) || file.write(dayFile(day, "", RecordsAFile)) < 0)
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
