#include "Classes/ACTIVITY_LOGS/DateScanner.h"

#include <QDate>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 DaySeconds = 86'400;
constexpr qsizetype LongestName = 12; // "septiembre", and what may follow

bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}
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

char16_t DateScanner::peek(qsizetype ahead) const
{
    return m_position + ahead < m_text.size() ? m_text[m_position + ahead].unicode() : u'\0';
}

bool DateScanner::isDigitAhead(qsizetype ahead) const
{
    return isDigit(peek(ahead));
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

bool DateScanner::skipWord(QLatin1StringView wanted)
{
    const qsizetype start = m_position;
    if (word() == wanted)
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

QString DateScanner::word()
{
    const qsizetype start = m_position;
    while (!isAtEnd() && m_text[m_position].isLetter())
        ++m_position;
    const QStringView letters = m_text.sliced(start, m_position - start);
    return letters.size() > LongestName ? letters.toString() : letters.toString().toLower();
}

std::optional<bool> DateScanner::half()
{
    const qsizetype start = m_position;
    const QString letters = word();
    if (letters == "am"_L1 || letters == u"午前"_s)
        return false;
    if (letters == "pm"_L1 || letters == u"午後"_s)
        return true;
    if (letters == "a"_L1 || letters == "p"_L1) {
        skip(u'.');
        skipBlanks();
        if (skipWord("m"_L1)) {
            skip(u'.');
            return letters == "p"_L1;
        }
    }
    m_position = start;
    return std::nullopt;
}

std::optional<int> DateScanner::zone()
{
    const qsizetype start = m_position;
    const QString letters = word();
    if (letters == "z"_L1)
        return 0;
    if (letters == "utc"_L1 || letters == "gmt"_L1)
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
