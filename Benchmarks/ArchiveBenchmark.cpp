// How long a schedule archive of 10,000 full records takes to become items, beside the time that the property
// list library alone needs for a tree of the same bytes. Both run in turns, so that a busy machine slows both,
// and each starts with a tidy heap: a released tree would otherwise be swept up in the time of whoever
// allocates next.

#include "Classes/Schedules/ScheduleArchive.h"
#include "Tests/Platform/ArchiveMaker.h"

#include <plist/plist.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include <malloc.h>

namespace
{
constexpr int Records = 10'000;
constexpr int Rounds = 15;

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
            fields.insert(QString::fromLatin1(key),
                          QStringLiteral("value %1 of %2").arg(i).arg(QLatin1StringView(key)));
        const auto days = maker.array({maker.add(QStringLiteral("Mon")), maker.add(QStringLiteral("Tue"))});
        fields.insert(QStringLiteral("scheduleTime"), QVariant::fromValue(maker.date(8e8 + i)));
        fields.insert(QStringLiteral("selectedDaysForSchedule"), QVariant::fromValue(days));
        records.append(maker.record(fields));
    }
    return maker.schedules(records);
}

double milliseconds(const std::function<void()> &work)
{
    malloc_trim(0);
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> times)
{
    std::nth_element(times.begin(), times.begin() + Rounds / 2, times.end());
    return times[Rounds / 2];
}
} // namespace

int main()
{
    const auto archive = makeArchive();
    std::vector<double> library;
    std::vector<double> release;
    std::vector<double> items;
    for (int round = 0; round < Rounds; ++round) {
        plist_t tree = nullptr;
        library.push_back(
            milliseconds([&] { plist_from_memory(archive.constData(), quint32(archive.size()), &tree); }));
        release.push_back(milliseconds([&] { plist_free(tree); }));
        std::optional<ScheduleRecords> records;
        items.push_back(
            milliseconds([&] { records = scheduleRecordsIn(archive, QLatin1StringView("Schedules")); }));
        if (!records || records->size() != size_t(Records) || !records->back()) {
            std::fputs("the archive did not decode\n", stderr);
            return 1;
        }
    }
    std::printf("archive of %d records, %.1f MB, medians of %d\n", Records, double(archive.size()) / 1e6,
                Rounds);
    std::printf("  library, tree alone          %7.2f ms\n", median(library));
    std::printf("  library, releasing the tree  %7.2f ms\n", median(release));
    std::printf("  archive to items             %7.2f ms\n", median(items));
    std::printf("  items / tree alone           %7.2f\n", median(items) / median(library));
}
