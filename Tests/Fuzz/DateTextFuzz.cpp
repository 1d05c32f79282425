// Any text as the date of a record: what comes of it has the list's form, and means the same when it is read
// again.

#include "Classes/ACTIVITY_LOGS/LogDates.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool hasZone =
        qputenv("TZ", "Europe/Berlin"); // with hours that are skipped and hours that repeat
    const QDateTime now(QDate(2026, 9, 24), QTime(12, 0));
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto date = to24HourFormat(text, now);
    const auto again = date ? to24HourFormat(date->formatted, now) : std::nullopt;
    const bool isSound =
        date ? date->formatted.size() == 19 && again->formatted == date->formatted && again->date == date->date
             : text.trimmed().isEmpty();
    if (!hasZone || !isSound)
        std::abort();
    return 0;
}
