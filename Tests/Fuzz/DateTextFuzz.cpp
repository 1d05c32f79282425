// Any text as the date of a record: what comes of it has the list's form, and means the same when it is read
// again.

#include "Classes/ACTIVITY_LOGS/LogDates.h"
#include "Tests/Fuzz/Promise.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // A zone with hours that are skipped and hours that repeat.
    static const bool hasZone = qputenv("TZ", "Europe/Berlin");
    promise(hasZone, "the time zone can be set");
    const QDateTime now(QDate(2026, 9, 24), QTime(12, 0));
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto date = to24HourFormat(text, now);
    promise(date || text.trimmed().isEmpty(), "every text but an empty one counts as a date");
    if (!date)
        return 0;
    promise(date->formatted.size() == 19, "a date is shown in one form");
    const auto again = to24HourFormat(date->formatted, now);
    promise(again->formatted == date->formatted && again->date == date->date, "what is shown means the same");
    return 0;
}
