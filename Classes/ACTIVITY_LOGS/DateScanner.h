#pragma once

#include <QString>

#include <optional>

/// A date and time as read so far. A part that the text doesn't tell stays as it is here.
struct DateFields {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    std::optional<bool> isAfternoon;  ///< with it, `hour` is one of twelve
    std::optional<int> secondsOffUtc; ///< east of Greenwich is above 0
};

/// The moment that a text tells.
struct WrittenDate {
    qint64 seconds = 0; ///< since 1970, by the clock that the text means
    bool isUtc = false; ///< that clock: Greenwich's, or the local one

    bool operator==(const WrittenDate &) const = default;
};

/// Nothing unless there is such a day and such a time; a year has up to four digits.
[[nodiscard]] std::optional<WrittenDate> writtenDate(const DateFields &fields);

/// Whether `text` is a word of small letters, in any case.
[[nodiscard]] inline bool isWord(QStringView text, QStringView word)
{
    // Most words differ in their first letter, which costs far less to see.
    return text.size() == word.size() &&
           (text.isEmpty() || (text[0].unicode() | 0x20) == (word[0].unicode() | 0x20)) &&
           text.compare(word, Qt::CaseInsensitive) == 0;
}

/// Walks over a text of dates from left to right. What is not there moves nothing. Digits are ASCII's, letters
/// and white space are Unicode's.
class DateScanner
{
public:
    struct Number {
        int value = 0;
        int digits = 0; ///< the length of the whole run; 0 where there was none
    };

    explicit DateScanner(QStringView text, qsizetype from = 0) : m_text(text), m_position(from) {}

    [[nodiscard]] bool isAtEnd() const { return m_position >= m_text.size(); }
    [[nodiscard]] qsizetype position() const { return m_position; }
    void moveTo(qsizetype position) { m_position = position; }
    /// The unit `ahead` of the next one; a NUL behind the end.
    [[nodiscard]] char16_t peek(qsizetype ahead = 0) const
    {
        return m_position + ahead < m_text.size() ? m_text[m_position + ahead].unicode() : u'\0';
    }
    [[nodiscard]] bool isDigitAhead(qsizetype ahead = 0) const
    {
        return peek(ahead) >= u'0' && peek(ahead) <= u'9';
    }

    /// Whether there was any.
    bool skipBlanks();
    bool skip(char16_t unit);
    /// A word is as long as its letters go, in any case.
    bool skipWord(QStringView wanted);

    /// A run of digits whose length lies between the two; any other is no number.
    std::optional<Number> number(int leastDigits, int mostDigits);
    /// A run of letters; empty where there is none.
    QStringView word();
    /// "AM", "p.m.", "a. m.", "午後" as whether it is afternoon.
    std::optional<bool> half();
    /// "Z", "UTC", "GMT+1", "+0100", "-03:30", "+01" in seconds.
    std::optional<int> zone();

private:
    std::optional<int> signedOffset();

    QStringView m_text;
    qsizetype m_position;
};
