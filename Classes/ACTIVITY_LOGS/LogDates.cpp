#include "Classes/ACTIVITY_LOGS/LogDates.h"

#include "Classes/ACTIVITY_LOGS/DateDetector.h"
#include "Classes/ACTIVITY_LOGS/DateForms.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 DaySeconds = 86'400;
const qint64 FirstDay = QDate(1970, 1, 1).toJulianDay();

/// Rounded down, before 1970 too.
qint64 dayOf(qint64 seconds)
{
    return seconds >= 0 ? seconds / DaySeconds : -((DaySeconds - 1 - seconds) / DaySeconds);
}

qint64 offsetAt(qint64 utcSeconds)
{
    return QDateTime::fromSecsSinceEpoch(utcSeconds).offsetFromUtc();
}

/// As much of a text as is looked at. A number that is cut is another number, so it goes whole.
QStringView beginning(QStringView text)
{
    if (text.size() <= LogDates::LongestText)
        return text;
    text = text.first(LogDates::LongestText);
    while (!text.isEmpty() && text.back().isDigit())
        text.chop(1);
    return text;
}

/// Letters, digits and colons of full width, and blanks of other widths, as the detector knows them.
std::optional<WrittenDate> detected(QStringView text)
{
    const bool isPlain = std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
    if (isPlain)
        return DateDetector::firstDate(text);
    const QString compatible = text.toString().normalized(QString::NormalizationForm_KC);
    return DateDetector::firstDate(beginning(compatible));
}

std::optional<WrittenDate> writtenIn(QStringView text)
{
    const auto date = text.size() <= LogDates::LongestText ? DateForms::read(text) : std::nullopt;
    return date ? date : detected(beginning(text));
}

void append(QString &text, int value, int digits)
{
    for (int place = digits == 4 ? 1000 : 10; place > 0; place /= 10)
        text += QChar(u'0' + value / place % 10);
}

QString textOf(qint64 wallSeconds)
{
    const qint64 day = dayOf(wallSeconds);
    const auto second = int(wallSeconds - day * DaySeconds);
    int year = 0;
    int month = 0;
    int dayOfMonth = 0;
    QDate::fromJulianDay(FirstDay + day).getDate(&year, &month, &dayOfMonth);
    QString text;
    text.reserve(19);
    append(text, month, 2);
    text += u'-';
    append(text, dayOfMonth, 2);
    text += u'-';
    append(text, year, 4);
    text += u' ';
    append(text, second / 3600, 2);
    text += u':';
    append(text, second / 60 % 60, 2);
    text += u':';
    append(text, second % 60, 2);
    return text;
}

/// Whether the year has four digits: a zone can carry a moment over either end.
bool canBeWritten(qint64 wallSeconds)
{
    static const qint64 first = QDate(1, 1, 1).toJulianDay() - FirstDay;
    static const qint64 last = QDate(9999, 12, 31).toJulianDay() - FirstDay;
    const qint64 day = dayOf(wallSeconds);
    return day >= first && day <= last;
}
} // namespace

LogDates::LogDates(const QDateTime &now)
{
    const QDateTime local = now.toLocalTime();
    m_now = local.toSecsSinceEpoch() + local.offsetFromUtc();
}

std::optional<LogDate> LogDates::to24HourFormat(QStringView text)
{
    const auto seconds = wallTime(text);
    if (!seconds)
        return std::nullopt;
    return LogDate{.formatted = textOf(*seconds),
                   .date = QDateTime::fromSecsSinceEpoch(byLocalClock(*seconds).utcSeconds)};
}

QString LogDates::formatted(QStringView text)
{
    const auto seconds = wallTime(text);
    return seconds ? textOf(*seconds) : QString();
}

std::optional<qint64> LogDates::wallTime(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    return toldBy(trimmed).value_or(m_now);
}

std::optional<qint64> LogDates::toldBy(QStringView text)
{
    const auto written = writtenIn(text);
    if (!written)
        return std::nullopt;
    const WallTime time = written->isUtc ? atUtc(written->seconds) : byLocalClock(written->seconds);
    return canBeWritten(time.seconds) ? std::optional(time.seconds) : std::nullopt;
}

LogDates::WallTime LogDates::atUtc(qint64 utcSeconds)
{
    const auto steady = steadyOffset(dayOf(utcSeconds));
    return {.seconds = utcSeconds + (steady ? *steady : offsetAt(utcSeconds)), .utcSeconds = utcSeconds};
}

/// Of an hour that comes twice the later one is meant. One that is skipped is read by the clock as it stood
/// before, so it shows as much later as the clock was put forward.
LogDates::WallTime LogDates::byLocalClock(qint64 seconds)
{
    const qint64 day = dayOf(seconds);
    if (const auto steady = steadyOffset(day))
        return {.seconds = seconds, .utcSeconds = seconds - *steady};
    const qint64 before = offsetAtNoon(day - 2);
    const qint64 after = offsetAtNoon(day + 2);
    for (const qint64 offset : {after, before}) {
        if (offsetAt(seconds - offset) == offset)
            return {.seconds = seconds, .utcSeconds = seconds - offset};
    }
    const qint64 utc = seconds - before;
    return {.seconds = utc + offsetAt(utc), .utcSeconds = utc};
}

/// What the clock is off from Greenwich in all of a day and the night at either end of it; nothing where that
/// changes.
std::optional<qint64> LogDates::steadyOffset(qint64 day)
{
    if (m_hasSteadyDay && m_steadyDay == day)
        return m_steadyOffset;
    const qint64 before = offsetAtNoon(day - 2);
    m_steadyOffset = offsetAtNoon(day + 2) == before ? std::optional(before) : std::nullopt;
    m_steadyDay = day;
    m_hasSteadyDay = true;
    return m_steadyOffset;
}

qint64 LogDates::offsetAtNoon(qint64 day)
{
    const auto known = m_offsets.constFind(day);
    if (known != m_offsets.cend())
        return *known;
    const qint64 offset = offsetAt(day * DaySeconds + DaySeconds / 2);
    m_offsets.insert(day, offset);
    return offset;
}

std::optional<LogDate> to24HourFormat(QStringView text, const QDateTime &now)
{
    return LogDates(now).to24HourFormat(text);
}
