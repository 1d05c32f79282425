#pragma once

#include "Classes/ACTIVITY_LOGS/DateScanner.h"

/// Finds dates in texts that are in none of DateForms: other separators, month names in the three languages,
/// two-digit years, a date among other words. Nothing here keeps a state, so any thread may call it.
namespace DateDetector
{
/// The first date of a text, with the time behind it. A day without a time is taken at noon: no time zone
/// skips that hour, and it is nearest to any other of the day. The text is looked at as long as it is: the
/// caller bounds it, and has brought it to its compatibility form (NFKC).
[[nodiscard]] std::optional<WrittenDate> firstDate(QStringView text);
} // namespace DateDetector
