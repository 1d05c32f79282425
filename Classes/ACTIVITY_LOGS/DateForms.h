#pragma once

#include "Classes/ACTIVITY_LOGS/DateScanner.h"

/// The forms in which the daemons write dates. Nothing here keeps a state, so any thread may call it.
namespace DateForms
{
/// What the first form that fits makes of a text without outer blanks. Forms are tried in their order, and
/// each wants the whole text and a day that exists: that tells "13-01-2026" from "01-13-2026".
[[nodiscard]] std::optional<WrittenDate> read(QStringView text);

/// What one form makes of a text. `pattern` has fields of Unicode Technical Standard 35 (two digits each, four
/// the year, English names); a blank of it is one or more in the text.
[[nodiscard]] std::optional<WrittenDate> readAs(QStringView pattern, QStringView text);

/// 1 to 12 for a name of a month, English or Spanish, whole or cut to three letters or more.
[[nodiscard]] std::optional<int> monthNamed(QStringView name);
} // namespace DateForms
