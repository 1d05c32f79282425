#pragma once

#include "Utility/Language/CVAppLocalization.h"

#include <QDate>
#include <QLatin1StringView>

#include <optional>
#include <span>

/// The periods that the list can be read for. A tag is what stands in the settings.
namespace LogPeriods
{
enum Tag : int { Week = 0, Month = 1, Beginning = 2, TwoWeeks = 3, Archive = 4 };

struct Period {
    int tag = Week;
    QLatin1StringView key; ///< of the path table: names the notification that chooses it
    const LocalizedText &title;
};
/// Those of the live logs, in the order of the pop-up.
[[nodiscard]] std::span<const Period> all();

/// The first day of a period that ends today; none for those that have no first day.
[[nodiscard]] std::optional<QDate> firstDay(int tag, QDate today);

/// Whether the days of a period are read page by page.
[[nodiscard]] constexpr bool isPaged(int tag)
{
    return tag == Beginning || tag == Archive;
}
} // namespace LogPeriods
