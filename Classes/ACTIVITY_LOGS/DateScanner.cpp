#include "Classes/ACTIVITY_LOGS/DateScanner.h"

#include <QDate>

namespace
{
constexpr qint64 DaySeconds = 86'400;
} // namespace

std::optional<WrittenDate> writtenDate(const DateFields &fields)
{
    static const qint64 firstDay = QDate(1970, 1, 1).toJulianDay();
    const QDate day(fields.year, fields.month, fields.day);
    const int hours = fields.isAfternoon ? 12 : 23;
    if (!day.isValid() || fields.year < 1 || fields.year > 9999 || fields.hour > hours || fields.minute > 59 ||
        fields.second > 59)
        return std::nullopt;
    const int hour = fields.isAfternoon ? fields.hour % 12 + (*fields.isAfternoon ? 12 : 0) : fields.hour;
    const qint64 seconds =
        (day.toJulianDay() - firstDay) * DaySeconds + (hour * 60 + fields.minute) * 60 + fields.second;
    return WrittenDate{.seconds = seconds - fields.secondsOffUtc.value_or(0),
                       .isUtc = fields.secondsOffUtc.has_value()};
}

bool DateScanner::skipBlanks()
{
    const qsizetype start = m_position;
    while (!isAtEnd() && m_text[m_position].isSpace())
        ++m_position;
    return m_position > start;
}

bool DateScanner::skip(char16_t unit)
{
    const bool isThere = !isAtEnd() && m_text[m_position] == unit;
    m_position += isThere ? 1 : 0;
    return isThere;
}

bool DateScanner::skipWord(QStringView wanted)
{
    const qsizetype start = m_position;
    if (isWord(word(), wanted))
        return true;
    m_position = start;
    return false;
}

std::optional<DateScanner::Number> DateScanner::number(int leastDigits, int mostDigits)
{
    Number number;
    while (number.digits <= mostDigits && isDigitAhead(number.digits)) {
        number.value = number.value * 10 + (peek(number.digits) - u'0');
        ++number.digits;
    }
    if (number.digits < leastDigits || number.digits > mostDigits)
        return std::nullopt;
    m_position += number.digits;
    return number;
}

QStringView DateScanner::word()
{
    const qsizetype start = m_position;
    while (!isAtEnd() && m_text[m_position].isLetter())
        ++m_position;
    return m_text.sliced(start, m_position - start);
}

std::optional<bool> DateScanner::half()
{
    const qsizetype start = m_position;
    const QStringView letters = word();
    if (isWord(letters, u"am") || letters == u"午前")
        return false;
    if (isWord(letters, u"pm") || letters == u"午後")
        return true;
    if (isWord(letters, u"a") || isWord(letters, u"p")) {
        const bool isAfternoon = isWord(letters, u"p");
        skip(u'.');
        skipBlanks();
        if (skipWord(u"m")) {
            skip(u'.');
            return isAfternoon;
        }
    }
    m_position = start;
    return std::nullopt;
}

std::optional<int> DateScanner::zone()
{
    const qsizetype start = m_position;
    const QStringView letters = word();
    if (isWord(letters, u"z"))
        return 0;
    if (isWord(letters, u"utc") || isWord(letters, u"gmt"))
        return signedOffset().value_or(0);
    if (letters.isEmpty()) {
        if (const auto offset = signedOffset())
            return offset;
    }
    m_position = start;
    return std::nullopt;
}

std::optional<int> DateScanner::signedOffset()
{
    const qsizetype start = m_position;
    const int sign = skip(u'-') ? -1 : 1;
    if (sign < 0 || skip(u'+')) {
        if (const auto together = number(4, 4);
            together && together->value < 2400 && together->value % 100 < 60)
            return sign * (together->value / 100 * 60 + together->value % 100) * 60;
        m_position = start + 1;
        if (const auto hours = number(1, 2); hours && hours->value < 24) {
            const qsizetype behindHours = m_position;
            const auto minutes = skip(u':') ? number(2, 2) : std::nullopt;
            if (minutes && minutes->value < 60)
                return sign * (hours->value * 60 + minutes->value) * 60;
            m_position = behindHours;
            return sign * hours->value * 3600;
        }
    }
    m_position = start;
    return std::nullopt;
}
