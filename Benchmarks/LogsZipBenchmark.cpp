// The lists of a sync record into a zip in the user's folder, beside what the library alone needs for the same
// bytes from memory into a file that is flushed likewise.

#include "Classes/ACTIVITY_LOGS/LogArchive.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::array Lists = {".sync-up", ".sync-down", ".rename", ".delete"};
constexpr int LinesPerList = 100'000; // some 10 MB

QByteArray makeList(int seed)
{
    QByteArray list;
    for (int line = 0; line < LinesPerList; ++line)
        list += QByteArrayLiteral("[09-24-2026 10:00:00] Uploaded /home/ana/Pictures/") +
                QByteArray::number((line * 2654435761U + seed) % 1'000'000) + "/IMG_" +
                QByteArray::number(line) + ".jpg  size: " + QByteArray::number(line * 977 % 5'000'000) +
                " bytes\n";
    return list;
}

void libraryAlone(benchmark::State &state)
{
    std::array<QByteArray, Lists.size()> lists;
    for (std::size_t i = 0; i < lists.size(); ++i)
        lists[i] = makeList(int(i));
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"bare.zip"_s));
    for (auto _ : state) {
        const int file = ::open(path.constData(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
        archive *const zip = archive_write_new();
        archive_write_set_format_zip(zip);
        bool isWhole = archive_write_open_fd(zip, file) == ARCHIVE_OK;
        for (std::size_t i = 0; i < lists.size(); ++i) {
            archive_entry *const entry = archive_entry_new();
            archive_entry_set_pathname(entry, Lists[i]);
            archive_entry_set_size(entry, lists[i].size());
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_perm(entry, 0600);
            isWhole = isWhole && archive_write_header(zip, entry) == ARCHIVE_OK &&
                      archive_write_data(zip, lists[i].constData(), size_t(lists[i].size())) == lists[i].size();
            archive_entry_free(entry);
        }
        isWhole = archive_write_close(zip) == ARCHIVE_OK && isWhole;
        archive_write_free(zip);
        if (::fsync(file) != 0 || ::close(file) != 0 || !isWhole)
            state.SkipWithError("the archive was not written");
    }
}

void savedRecord(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString log = folder.filePath(u"09-24-2026-10-00-00_sync"_s);
    for (std::size_t i = 0; i < Lists.size(); ++i) {
        QFile list(log + QString::fromLatin1(Lists[i]));
        const QByteArray bytes = makeList(int(i));
        if (!list.open(QIODevice::WriteOnly) || list.write(bytes) != bytes.size())
            state.SkipWithError("the lists were not written");
    }
    const QDir target(folder.filePath(u"to"_s));
    const std::atomic<bool> stop = false;
    for (auto _ : state) {
        state.PauseTiming();
        if (!QDir(target).removeRecursively() || !QDir().mkpath(target.path()))
            state.SkipWithError("no folder to save to");
        state.ResumeTiming();
        if (LogArchive::save({{log, true}}, target.path(), stop).files != 1)
            state.SkipWithError("the record was not saved");
    }
}

BENCHMARK(libraryAlone)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(savedRecord)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
} // namespace

BENCHMARK_MAIN();
