#include "Classes/ACTIVITY_LOGS/DateDetector.h"

#include "Classes/ACTIVITY_LOGS/DateForms.h"

#include <algorithm>

namespace
{
constexpr int YearsOfThisCentury = 70; // "69" is 2069, "70" is 1970

int wholeYear(DateScanner::Number year)
{
    if (year.digits > 2)
        return year.value;
    return year.value + (year.value < YearsOfThisCentury ? 2000 : 1900);
}

bool isDay(const DateFields &fields)
{
    return writtenDate({.year = fields.year, .month = fields.month, .day = fields.day}).has_value();
}

bool isSeparator(char16_t unit)
{
    return unit == u'-' || unit == u'/' || unit == u'.';
}

/// "2026-09-24", "9/24/26", "24.09.2026". The month comes first where both could be meant, but for dots, which
/// nobody who writes the month first uses.
bool readNumericDate(DateScanner &in, DateFields &fields)
{
    const auto first = in.number(1, 4);
    const char16_t separator = in.peek();
    if (!first || first->digits == 3 || !isSeparator(separator))
        return false;
    in.skip(separator);
    const auto second = in.number(1, 2);
    if (!second || !in.skip(separator))
        return false;
    const auto third = in.number(1, 4);
    if (!third)
        return false;
    if (first->digits == 4) {
        fields = {.year = first->value, .month = second->value, .day = third->value};
        return third->digits <= 2 && isDay(fields);
    }
    const bool isMore = in.peek() == separator && in.isDigitAhead(1); // "1-2-26-4" is a number of its own kind
    if (third->digits != 4 && (third->digits != 2 || separator == u'.' || isMore))
        return false;
    fields = {.year = wholeYear(*third), .month = first->value, .day = second->value};
    if (separator == u'.')
        std::swap(fields.month, fields.day);
    if (!isDay(fields))
        std::swap(fields.month, fields.day);
    return isDay(fields);
}

/// "2026年9月24日".
bool readJapaneseDate(DateScanner &in, DateFields &fields)
{
    const auto part = [&in](int least, int most, char16_t unit) {
        in.skipBlanks();
        const auto number = in.number(least, most);
        return number && in.skip(unit) ? number->value : 0;
    };
    fields.year = part(4, 4, u'年');
    fields.month = fields.year > 0 ? part(1, 2, u'月') : 0;
    fields.day = fields.month > 0 ? part(1, 2, u'日') : 0;
    return isDay(fields);
}

/// "September", "sept.", "9月".
bool readMonth(DateScanner &in, DateFields &fields)
{
    if (const auto number = in.number(1, 2)) {
        fields.month = number->value;
        return in.skip(u'月');
    }
    fields.month = DateForms::monthNamed(in.word()).value_or(0);
    in.skip(u'.');
    return fields.month > 0;
}

bool readDay(DateScanner &in, DateFields &fields)
{
    const auto day = in.number(1, 2);
    if (!day)
        return false;
    fields.day = day->value;
    for (const QStringView ending : {u"st", u"nd", u"rd", u"th"}) {
        if (in.skipWord(ending))
            break;
    }
    in.skip(u'日');
    return true;
}

/// A number that begins a time is no year.
bool readYear(DateScanner &in, DateFields &fields)
{
    in.skip(u',');
    in.skipBlanks();
    auto year = in.number(4, 4);
    if (!year)
        year = in.number(2, 2);
    if (!year || in.peek() == u':')
        return false;
    fields.year = wholeYear(*year);
    return true;
}

struct TimeStyle {
    bool isAfterHyphen = false; ///< names of files have "10-00-00"
};

/// "10:00", "10:00:00.123 PM", "午後3:05:07", "10時5分7秒", each with a zone or none. False leaves the fields
/// as they were.
bool readTime(DateScanner &in, DateFields &fields, TimeStyle style)
{
    DateFields read = fields;
    read.isAfternoon = in.half();
    in.skipBlanks();
    const auto hour = in.number(1, 2);
    const char16_t separator = in.peek();
    const bool isJapanese = separator == u'時';
    if (!hour || !(separator == u':' || isJapanese || (separator == u'-' && style.isAfterHyphen)))
        return false;
    in.skip(separator);
    const int leastDigits = isJapanese ? 1 : 2;
    const auto minute = in.number(leastDigits, 2);
    if (!minute && !isJapanese)
        return false;
    std::optional<DateScanner::Number> second;
    if (in.skip(isJapanese ? u'分' : separator)) {
        second = in.number(leastDigits, 2);
        in.skip(u'秒');
    }
    if (second && (in.peek() == u'.' || in.peek() == u',') && in.isDigitAhead(1)) {
        in.skip(in.peek());
        in.number(1, 9);
    }
    read.hour = hour->value;
    read.minute = minute ? minute->value : 0;
    read.second = second ? second->value : 0;
    if (!read.isAfternoon) {
        const qsizetype behindTime = in.position();
        in.skipBlanks();
        read.isAfternoon = in.half();
        if (!read.isAfternoon)
            in.moveTo(behindTime);
    }
    if (read.hour > 12)
        read.isAfternoon.reset();
    if (!writtenDate(read))
        return false;
    const qsizetype beforeZone = in.position();
    in.skipBlanks();
    // Behind a blank, "-12" may be anything.
    const bool isFarNumber =
        in.position() > beforeZone && in.peek() == u'-' && in.peek(3) != u':' && !in.isDigitAhead(3);
    read.secondsOffUtc = isFarNumber ? std::nullopt : in.zone();
    if (!read.secondsOffUtc)
        in.moveTo(beforeZone);
    fields = read;
    return true;
}

/// What stands between a date and its time.
TimeStyle skipToTime(DateScanner &in)
{
    TimeStyle style;
    while (!in.isAtEnd()) {
        const qsizetype start = in.position();
        in.skipBlanks();
        if (in.skip(u'-') || in.skip(u'_'))
            style.isAfterHyphen = true;
        else if ((in.peek() == u'T' || in.peek() == u't') && in.isDigitAhead(1))
            in.skip(in.peek());
        else if (in.peek() == u'(' && in.peek(2) == u')') // "(木)"
            in.moveTo(in.position() + 3);
        else if (!in.skip(u',') && !in.skipWord(u"at") && !in.skipWord(u"a") && !in.skipWord(u"las") &&
                 in.position() == start)
            break;
    }
    return style;
}

/// The time is left away where it is none.
std::optional<WrittenDate> withTime(DateScanner &in, DateFields &fields)
{
    const TimeStyle style = skipToTime(in);
    if (!readTime(in, fields, style))
        fields.hour = 12;
    return writtenDate(fields);
}

/// "Sep 24, 2026 10:00:00 AM", "9月 24, 2026", and with the year last: "Thu Sep 24 10:00:00 CEST 2026".
std::optional<WrittenDate> monthFirst(DateScanner in)
{
    DateFields fields;
    if (!readMonth(in, fields))
        return std::nullopt;
    in.skipBlanks();
    if (!readDay(in, fields))
        return std::nullopt;
    const qsizetype behindDay = in.position();
    if (readYear(in, fields) && isDay(fields))
        return withTime(in, fields);
    in.moveTo(behindDay);
    in.skipBlanks();
    fields.year = 2000; // of a leap year, until it is read
    if (!isDay(fields) || !readTime(in, fields, {}))
        return std::nullopt;
    in.skipBlanks();
    in.word();
    return readYear(in, fields) ? writtenDate(fields) : std::nullopt;
}

/// "24 Sep 2026", "24-sept-26", "24 de septiembre de 2026, 10:00:00 a. m.".
std::optional<WrittenDate> dayFirst(DateScanner in)
{
    const auto skipLink = [&in] {
        in.skipBlanks();
        in.skip(u'-');
        if (in.skipWord(u"de") || in.skipWord(u"del"))
            in.skipBlanks();
    };
    DateFields fields;
    if (!readDay(in, fields))
        return std::nullopt;
    skipLink();
    if (!readMonth(in, fields))
        return std::nullopt;
    skipLink();
    if (!readYear(in, fields) || !isDay(fields))
        return std::nullopt;
    return withTime(in, fields);
}

std::optional<WrittenDate> dateAt(QStringView text, qsizetype place)
{
    if (text[place].isDigit()) {
        for (const auto reader : {readNumericDate, readJapaneseDate}) {
            DateScanner in(text, place);
            DateFields fields;
            if (reader(in, fields))
                return withTime(in, fields);
        }
        if (const auto date = dayFirst(DateScanner(text, place)))
            return date;
    }
    return monthFirst(DateScanner(text, place));
}

/// Numbers and words are looked at from their beginning, a number behind a separator not at all: "30-2026" of
/// "02-30-2026" is no date.
bool canBegin(QStringView text, qsizetype place)
{
    const QChar unit = text[place];
    if (!unit.isDigit())
        return unit.isLetter() && (place == 0 || !text[place - 1].isLetter());
    if (place == 0)
        return true;
    const QChar before = text[place - 1];
    const bool isPart = place > 1 && isSeparator(before.unicode()) && text[place - 2].isDigit();
    return !before.isDigit() && !isPart;
}
} // namespace

std::optional<WrittenDate> DateDetector::firstDate(QStringView text)
{
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (!canBegin(text, place))
            continue;
        if (const auto date = dateAt(text, place))
            return date;
    }
    return std::nullopt;
}
