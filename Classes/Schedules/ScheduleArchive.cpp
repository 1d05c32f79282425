#include "Classes/Schedules/ScheduleArchive.h"

#include "Platform/AtomicFile.h"
#include "Platform/KeyedArchive.h"
#include "Platform/Limits.h"

using namespace Qt::StringLiterals;

std::optional<ScheduleRecords> contentsOfArchivedFile(const std::optional<QString> &path, QLatin1StringView key)
{
    const auto bytes = path ? AtomicFile::read(*path, Limits::ArchiveBytes) : std::nullopt;
    return bytes ? scheduleRecordsIn(*bytes, key) : std::nullopt;
}

std::optional<ScheduleRecords> scheduleRecordsIn(const QByteArray &bytes, QLatin1StringView key)
{
    const auto archive = KeyedArchive::open(bytes);
    const auto entries = archive ? archive->decodeObject(key).entries() : std::nullopt;
    if (!entries || qsizetype(entries->size()) > Limits::ArchiveRecords)
        return std::nullopt;
    ScheduleRecords records;
    records.reserve(entries->size());
    for (const auto &entry : *entries) {
        if (entry.isKindOf("CorvaneScheduleItem"_L1))
            records.emplace_back(CorvaneScheduleItem::decoded(entry));
        else
            records.emplace_back();
    }
    if (archive->isExhausted()) // the last records would be empty shells that look like jobs to start at once
        return std::nullopt;
    return records;
}
