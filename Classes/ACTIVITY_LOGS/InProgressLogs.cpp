#include "Classes/ACTIVITY_LOGS/InProgressLogs.h"

#include "Classes/ACTIVITY_LOGS/DayFileScan.h"
#include "Platform/AtomicFile.h"
#include "Platform/StampedFile.h"
#include "Source/Logger/WriteTrace.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr mode_t ForEverybody = 0777;

/// Listed whole before the first is replaced, since a listing may show a replaced file twice.
QStringList dayFiles(const QString &folder)
{
    QStringList paths;
    if (!folder.startsWith(u'/')) // no folder is known
        return paths;
    // What a link leads to lies elsewhere, and is nobody's to open for everybody.
    QDirIterator entries(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        if (QString path = entries.next(); path.endsWith(".xml"_L1))
            paths.push_back(std::move(path));
    }
    return paths;
}

std::vector<DayFileScan::Record> runningJobs(const QString &path, const QByteArray &bytes)
{
    DayFileScan::Outcome outcome = DayFileScan::run(bytes, {});
    if (!outcome.isWhole)
        traceFailure(path, FileResult::refused(outcome.reason));
    std::erase_if(outcome.records, [](const auto &record) { return !record.isInProgress; });
    return std::move(outcome.records);
}

bool isWritten(const QString &path, const QByteArray &bytes, const FileStamp &stamp)
{
    const auto isUnchanged = [&] { return FileStamp::of(path) == stamp; };
    const FileResult written = AtomicFile::write(path, bytes, {.mayReplace = isUnchanged});
    if (written.error() == ESTALE || !traceFailure(path, written))
        return false;
    const bool isOpen = ::chmod(QFile::encodeName(path).constData(), ForEverybody) == 0;
    traceFailure(path, isOpen ? FileResult() : FileResult::failed(errno));
    return true;
}

/// Nearly every file of a folder ends here, so nothing else is asked of it before.
bool mayHoldRunningJobs(const QString &path)
{
    const auto bytes = AtomicFile::read(path, Limits::DayFileBytes);
    return bytes &&
           std::string_view(bytes->constData(), std::size_t(bytes->size())).find(DayFileScan::InProgress) !=
               std::string_view::npos;
}

/// The session logs of the records that went from one file.
QStringList cleanUp(const QString &path, std::chrono::nanoseconds lostAt)
{
    if (!mayHoldRunningJobs(path))
        return {};
    // The stamp is taken before the bytes that it stands for.
    const auto stamp = FileStamp::of(path);
    const auto bytes = AtomicFile::read(path, Limits::DayFileBytes);
    if (!stamp || !bytes || std::max(stamp->modified, stamp->changed) > lostAt)
        return {};
    const std::vector<DayFileScan::Record> running = runningJobs(path, *bytes);
    if (running.empty() || !isWritten(path, DayFileScan::without(running, *bytes), *stamp))
        return {};
    QStringList logfiles;
    for (const auto &record : running) {
        if (!record.node->logfile.isEmpty())
            logfiles.push_back(record.node->logfile);
    }
    return logfiles;
}
} // namespace

QStringList InProgressLogs::removeInProgressLogsFromXML(const QString &folder, std::chrono::nanoseconds lostAt,
                                                        const std::stop_token &stop)
{
    QStringList logfiles;
    for (const QString &path : dayFiles(folder)) {
        if (stop.stop_requested())
            break;
        logfiles += cleanUp(path, lostAt);
    }
    return logfiles;
}
