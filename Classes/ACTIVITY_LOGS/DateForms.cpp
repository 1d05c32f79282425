#include "Classes/ACTIVITY_LOGS/DateForms.h"

#include <algorithm>
#include <iterator>

namespace
{
constexpr QStringView Forms[] = {
    u"MM-yyyy-dd HH:mm:ss",        u"MM-dd-yyyy hh:mm:ss a",       u"MM/dd/yyyy hh:mm:ss a",
    u"MM-dd-yyyy HH:mm:ss",        u"MM/dd/yyyy HH:mm:ss",         u"MM-dd-yyyy hh:mm a",
    u"MM-dd-yyyy HH:mm",           u"yyyy-MM-dd HH:mm:ss",         u"yyyy/MM/dd HH:mm:ss",
    u"dd-MM-yyyy HH:mm:ss",        u"dd/MM/yyyy HH:mm:ss",         u"yyyy-MM-dd'T'HH:mm:ssZ",
    u"yyyy-MM-dd'T'HH:mm:ss.SSSZ", u"EEE, dd MMM yyyy HH:mm:ss Z", u"EEE MMM dd HH:mm:ss yyyy",
};

constexpr QStringView EnglishMonths[] = {u"january",   u"february", u"march",    u"april",
                                         u"may",       u"june",     u"july",     u"august",
                                         u"september", u"october",  u"november", u"december"};
constexpr QStringView SpanishMonths[] = {u"enero",      u"febrero", u"marzo",     u"abril",
                                         u"mayo",       u"junio",   u"julio",     u"agosto",
                                         u"septiembre", u"octubre", u"noviembre", u"diciembre"};
constexpr QStringView Weekdays[] = {u"sunday",   u"monday", u"tuesday", u"wednesday",
                                    u"thursday", u"friday", u"saturday"};

/// Counted from 1. A name stands whole or as its first three letters.
template<class Names>
std::optional<int> placeOfName(const Names &names, QStringView word)
{
    const auto found = std::find_if(std::begin(names), std::end(names), [word](QStringView name) {
        return isWord(word, word.size() == 3 ? name.first(3) : name);
    });
    if (found == std::end(names))
        return std::nullopt;
    return int(found - std::begin(names)) + 1;
}

bool readNumber(DateScanner &in, int digits, int &value)
{
    const auto number = in.number(digits, digits);
    value = number ? number->value : 0;
    return number.has_value();
}

bool readMonthName(DateScanner &in, DateFields &fields)
{
    const auto month = placeOfName(EnglishMonths, in.word());
    fields.month = month.value_or(0);
    return month.has_value();
}

bool readField(char16_t letter, int width, DateScanner &in, DateFields &fields)
{
    in.skipBlanks();
    switch (letter) {
    case u'y':
        return readNumber(in, 4, fields.year);
    case u'M':
        return width == 3 ? readMonthName(in, fields) : readNumber(in, 2, fields.month);
    case u'd':
        return readNumber(in, 2, fields.day);
    case u'H':
        return readNumber(in, 2, fields.hour);
    case u'h':
        return readNumber(in, 2, fields.hour) && fields.hour > 0;
    case u'm':
        return readNumber(in, 2, fields.minute);
    case u's':
        return readNumber(in, 2, fields.second);
    case u'S': // dates are of whole seconds
        return in.number(1, 9).has_value();
    case u'a':
        return (fields.isAfternoon = in.half()).has_value();
    case u'Z':
        return (fields.secondsOffUtc = in.zone()).has_value();
    case u'E':
        return placeOfName(Weekdays, in.word()).has_value();
    default:
        return false;
    }
}

/// The form of nearly every record, "09-24-2026 10:00:00", without the walk over those that don't fit.
std::optional<WrittenDate> readUsualForm(QStringView text)
{
    if (text.size() != 19)
        return std::nullopt;
    const char16_t *unit = text.utf16();
    const char16_t separator = unit[2];
    if ((separator != u'-' && separator != u'/') || unit[5] != separator || unit[10] != u' ' ||
        unit[13] != u':' || unit[16] != u':')
        return std::nullopt;
    bool areDigits = true;
    const auto pairAt = [&](int place) {
        const unsigned tens = unit[place] - unsigned(u'0');
        const unsigned ones = unit[place + 1] - unsigned(u'0');
        areDigits = areDigits && tens < 10 && ones < 10;
        return int(tens * 10 + ones);
    };
    DateFields fields{
        .month = pairAt(0), .day = pairAt(3), .hour = pairAt(11), .minute = pairAt(14), .second = pairAt(17)};
    const int century = pairAt(6);
    fields.year = century * 100 + pairAt(8);
    if (!areDigits)
        return std::nullopt;
    if (fields.month > 12)
        std::swap(fields.month, fields.day);
    return writtenDate(fields);
}
} // namespace

std::optional<WrittenDate> DateForms::read(QStringView text)
{
    if (const auto date = readUsualForm(text))
        return date;
    for (const QStringView form : Forms) {
        if (const auto date = readAs(form, text))
            return date;
    }
    return std::nullopt;
}

std::optional<WrittenDate> DateForms::readAs(QStringView pattern, QStringView text)
{
    DateScanner in(text);
    DateFields fields;
    bool isQuoted = false;
    for (qsizetype i = 0; i < pattern.size();) {
        const char16_t unit = pattern[i].unicode();
        qsizetype width = 1;
        if (unit == u'\'') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && pattern[i].isLetter()) {
            while (i + width < pattern.size() && pattern[i + width] == unit)
                ++width;
            if (!readField(unit, int(width), in, fields))
                return std::nullopt;
        } else if (unit == u' ' ? !in.skipBlanks() : !in.skip(unit)) {
            return std::nullopt;
        }
        i += width;
    }
    return in.isAtEnd() ? writtenDate(fields) : std::nullopt;
}

std::optional<int> DateForms::monthNamed(QStringView name)
{
    const qsizetype length = name.size();
    if (length < 3)
        return std::nullopt;
    for (int i = 0; i < 12; ++i) {
        for (const QStringView month : {EnglishMonths[i], SpanishMonths[i]}) {
            if (length <= month.size() && isWord(name, month.first(length)))
                return i + 1;
        }
    }
    return std::nullopt;
}
