// How long a schedule archive of 10,000 full records takes to become items, beside the time that the property
// list library alone needs for a tree of the same bytes.

#include "Classes/Schedules/ScheduleArchive.h"
#include "Tests/Platform/ArchiveMaker.h"

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Records = 10'000;

QByteArray makeArchive()
{
    ArchiveMaker maker;
    QList<PropertyListUid> records;
    for (int i = 0; i < Records; ++i) {
        QVariantMap fields;
        for (const auto *key :
             {"backupType", "status", "scheduleType", "frequency", "modify", "timeSettings", "notifyMe"})
            fields.insert(QString::fromLatin1(key), i % 2);
        for (const auto *key :
             {"displayDesktopNotification", "shouldStartMissedScheduleBackup", "sendEmailNotification",
              "isUseSSL", "sendLogExtract", "notifyOnFailure", "isAutoSyncEnabled"})
            fields.insert(QString::fromLatin1(key), i % 3 == 0);
        for (const auto *key :
             {"username", "corvaneUserName", "userAtServer", "serverName", "password", "processReferenceFile",
              "emailids", "quotaServerName", "profileName", "destination"})
            fields.insert(QString::fromLatin1(key), u"value %1 of %2"_s.arg(i).arg(QLatin1StringView(key)));
        const auto days = maker.array({maker.add(u"Mon"_s), maker.add(u"Tue"_s)});
        fields.insert(u"scheduleTime"_s, QVariant::fromValue(maker.date(8e8 + i)));
        fields.insert(u"selectedDaysForSchedule"_s, QVariant::fromValue(days));
        records.append(maker.record(fields));
    }
    return maker.schedules(records);
}

void libraryTreeAlone(benchmark::State &state)
{
    const auto archive = makeArchive();
    for (auto _ : state) {
        plist_t tree = nullptr;
        plist_from_memory(archive.constData(), quint32(archive.size()), &tree);
        // What is released would otherwise be swept up in the time of whoever allocates next.
        state.PauseTiming();
        plist_free(tree);
        malloc_trim(0);
        state.ResumeTiming();
    }
}

void archiveToItems(benchmark::State &state)
{
    const auto archive = makeArchive();
    for (auto _ : state) {
        auto records = scheduleRecordsIn(archive, "Schedules"_L1);
        state.PauseTiming();
        if (!records || records->size() != size_t(Records) || !records->back())
            state.SkipWithError("the archive did not decode");
        records.reset();
        malloc_trim(0);
        state.ResumeTiming();
    }
}

BENCHMARK(libraryTreeAlone)->Unit(benchmark::kMillisecond)->Repetitions(15)->ReportAggregatesOnly();
BENCHMARK(archiveToItems)->Unit(benchmark::kMillisecond)->Repetitions(15)->ReportAggregatesOnly();
} // namespace

BENCHMARK_MAIN();
