#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

/// Whether `locale` shows a 24-hour clock: its short form of the time `now` has neither of its half-day
/// symbols.
[[nodiscard]] bool getTimeFormat(const QLocale &locale = QLocale(),
                                 const QDateTime &now = QDateTime::currentDateTime());

/// `moment` in local time as "MM-dd-yyyy HH:mm", whatever the clock of the locale: in plain digits where it
/// shows a 24-hour clock, in the locale's own digits and calendar (Unicode CLDR) where it shows a 12-hour one.
[[nodiscard]] QString scheduleTimeText(const QDateTime &moment, const QLocale &locale);
