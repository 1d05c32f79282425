#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

#include <optional>

/// A date as the list shows it, and the moment that it is sorted by.
struct LogDate {
    QString formatted; ///< "09-24-2026 10:00:00", by the local clock
    QDateTime date;    ///< the same in whole seconds, local time
};

/// Reads the dates of log records, for one read or sort of the list: all texts that tell no date then stand for
/// the same moment. It keeps what it learnt of the local time zone, so it belongs to one thread and is not kept
/// longer.
class LogDates
{
public:
    /// Of a longer text only the beginning is looked at.
    static constexpr qsizetype LongestText = 300;

    /// `now` is what a text counts as that tells no date.
    explicit LogDates(const QDateTime &now);

    /// Nothing for a text that is empty or white space.
    [[nodiscard]] std::optional<LogDate> to24HourFormat(QStringView text);

    /// The same as seconds that the local clock shows since 1970 began on it. Their order is that of the dates,
    /// and they cost far less.
    [[nodiscard]] std::optional<qint64> wallTime(QStringView text);
    /// The same as `LogDate::formatted`.
    [[nodiscard]] QString formatted(QStringView text);

private:
    struct WallTime {
        qint64 seconds = 0;
        qint64 utcSeconds = 0;
    };

    [[nodiscard]] std::optional<qint64> toldBy(QStringView text);
    [[nodiscard]] WallTime atUtc(qint64 utcSeconds);
    [[nodiscard]] WallTime byLocalClock(qint64 seconds);
    [[nodiscard]] std::optional<qint64> steadyOffset(qint64 day);
    [[nodiscard]] qint64 offsetAtNoon(qint64 day);

    qint64 m_now = 0;
    QHash<qint64, qint64> m_offsets; ///< from Greenwich, at noon there of days since 1970
    qint64 m_steadyDay = 0;          ///< the day asked for last, most often the next one too
    std::optional<qint64> m_steadyOffset;
    bool m_hasSteadyDay = false;
};

/// LogDates(now).to24HourFormat(text), for a single text.
[[nodiscard]] std::optional<LogDate> to24HourFormat(QStringView text, const QDateTime &now);
