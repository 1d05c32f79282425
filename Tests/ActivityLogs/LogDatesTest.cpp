// The dates of records: the forms that the daemons write, and dates found in other texts.

#include "Classes/ACTIVITY_LOGS/LogDates.h"
#include "Classes/ACTIVITY_LOGS/DateForms.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

#include <unicode/smpdtfmt.h>

#include <gtest/gtest.h>

#include <ctime>

using namespace Qt::StringLiterals;

namespace
{
/// A test in a time zone of its own.
class LogDatesTest : public testing::Test
{
protected:
    LogDatesTest() { setZone("Europe/Berlin"); }
    ~LogDatesTest() override { m_zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", m_zone), tzset(); }
    static void setZone(const char *zone)
    {
        qputenv("TZ", zone);
        tzset();
    }
    [[nodiscard]] static QString shown(const QString &text)
    {
        const auto date =
            to24HourFormat(text, QDateTime::fromSecsSinceEpoch(1'700'000'000)); // 11-14-2023 23:13:20
        return date ? date->formatted : u"nothing"_s;
    }

private:
    const QByteArray m_zone = qgetenv("TZ");
};

const QString Now = u"11-14-2023 23:13:20"_s;
} // namespace

TEST_F(LogDatesTest, ATextIsReadByTheFirstFormThatFits)
{
    const Row<QString, QString> rows[] = {
        {"year in the middle", u"09-2026-24 17:05:07"_s, u"09-24-2026 17:05:07"_s},
        {"twelve hours", u"09-24-2026 05:05:07 PM"_s, u"09-24-2026 17:05:07"_s},
        {"twelve hours, slashes, small letters", u"09/24/2026 12:05:07 am"_s, u"09-24-2026 00:05:07"_s},
        {"twelve at noon", u"09-24-2026 12:05:07 PM"_s, u"09-24-2026 12:05:07"_s},
        {"month first", u"04-05-2026 17:05:07"_s, u"04-05-2026 17:05:07"_s},
        {"month first, slashes", u"04/05/2026 17:05:07"_s, u"04-05-2026 17:05:07"_s},
        {"no seconds, twelve hours", u"09-24-2026 05:05 PM"_s, u"09-24-2026 17:05:00"_s},
        {"no seconds", u"09-24-2026 17:05"_s, u"09-24-2026 17:05:00"_s},
        {"year first", u"2026-09-24 17:05:07"_s, u"09-24-2026 17:05:07"_s},
        {"year first, slashes", u"2026/09/24 17:05:07"_s, u"09-24-2026 17:05:07"_s},
        {"there is no month 13", u"13-01-2026 10:00:00"_s, u"01-13-2026 10:00:00"_s},
        {"there is no month 13, slashes", u"13/01/2026 10:00:00"_s, u"01-13-2026 10:00:00"_s},
        {"zone", u"2026-09-24T17:05:07+0530"_s, u"09-24-2026 13:35:07"_s},
        {"Greenwich, over midnight", u"2026-12-31T23:30:00Z"_s, u"01-01-2027 00:30:00"_s},
        {"parts of a second", u"2026-09-24T17:05:07.999Z"_s, u"09-24-2026 19:05:07"_s},
        {"mail", u"Thu, 24 Sep 2026 17:05:07 -0100"_s, u"09-24-2026 20:05:07"_s},
        {"C library", u"Thu Sep 24 17:05:07 2026"_s, u"09-24-2026 17:05:07"_s},
        {"outer white space", u" \n09-24-2026  17:05:07\t"_s, u"09-24-2026 17:05:07"_s},
        {"a day of a leap year", u"02-29-2028 10:00:00"_s, u"02-29-2028 10:00:00"_s},
        {"no such day", u"02-30-2026 10:00:00"_s, Now},
        {"empty", u""_s, u"nothing"_s},
        {"white space", u" \n\t"_s, u"nothing"_s},
    };
    forEachRow(rows, [](const auto &row) { EXPECT_EQ(shown(row.given), row.expected); });
}

TEST_F(LogDatesTest, ADateIsFoundInOtherTexts)
{
    const Row<QString, QString> rows[] = {
        {"rebuilt record", u"09-24-2026-17-05-07"_s, u"09-24-2026 17:05:07"_s},
        {"archived record", u"Sep 24, 2026 05:05:07 PM"_s, u"09-24-2026 17:05:07"_s},
        {"Spanish", u"sept. 24, 2026 05:05:07 p.\u00a0m."_s, u"09-24-2026 17:05:07"_s},
        {"Spanish, in words", u"24 de enero de 2026, 12:05:07 a. m."_s, u"01-24-2026 00:05:07"_s},
        {"Japanese", u"9月 24, 2026 05:05:07 午後"_s, u"09-24-2026 17:05:07"_s},
        {"Japanese, whole", u"2026年9月24日(木) 午後5時5分7秒"_s, u"09-24-2026 17:05:07"_s},
        {"full width", u"２０２６/０９/２４　１７：０５：０７"_s, u"09-24-2026 17:05:07"_s},
        {"two-digit year", u"9/24/26, 5:05 PM"_s, u"09-24-2026 17:05:00"_s},
        {"two-digit year of the last century", u"24-12-99 17:05:07"_s, u"12-24-1999 17:05:07"_s},
        {"dots", u"04.05.2026 17:05:07"_s, u"05-04-2026 17:05:07"_s},
        {"T without a zone", u"2026-09-24T17:05:07"_s, u"09-24-2026 17:05:07"_s},
        {"Z behind a blank", u"2026-09-24 17:05:07.5 Z"_s, u"09-24-2026 19:05:07"_s},
        {"zone with a colon", u"2026-09-24T17:05:07-03:30"_s, u"09-24-2026 22:35:07"_s},
        {"zone's name", u"Thu Sep  4 17:05:07 CEST 2026"_s, u"09-04-2026 17:05:07"_s},
        {"first of two", u"Job 7 ran at 9/24/2026 17:05 (12 files), before 01-01-2026 10:00:00"_s,
         u"09-24-2026 17:05:00"_s},
        {"no time", u"since September 24th, 2026"_s, u"09-24-2026 12:00:00"_s},
        {"no such time", u"09-24-2026 25:00:00"_s, u"09-24-2026 12:00:00"_s},
        {"a number behind is no zone", u"09/24/2026 - 17:05:07 -12 files"_s, u"09-24-2026 17:05:07"_s},
        {"no such day, and more numbers", u"02-30-2026-10-05-07"_s, Now},
        {"versions and addresses", u"9.2.10 of 10.1.26.4, 1-2-26-4, may 7"_s, Now},
        {"year out of range", u"0001-01-01T00:30:00+0200"_s, Now},
        {"behind what is looked at", u"-"_s.repeated(LogDates::LongestText) + u"09-24-2026 17:05:07"_s, Now},
        {"cut inside the year", u"-"_s.repeated(LogDates::LongestText - 8) + u"09-24-2026 17:05:07"_s, Now},
        {"no words", (u"\ufdfa"_s + QChar(0xD83D)).repeated(5000), Now},
    };
    forEachRow(rows, [](const auto &row) { EXPECT_EQ(shown(row.given), row.expected); });
}

TEST_F(LogDatesTest, AClockThatIsPutForwardOrBackKeepsTheOrder)
{
    const Row<QString, QString> rows[] = {
        {"before the skipped hour", u"03-29-2026 01:59:59"_s, u"01:59:59 UTC+01:00"_s},
        {"in it", u"03-29-2026 02:30:00"_s, u"03:30:00 UTC+02:00"_s},
        {"before the repeated hour", u"10-25-2026 01:59:59"_s, u"01:59:59 UTC+02:00"_s},
        {"in it", u"10-25-2026 02:30:00"_s, u"02:30:00 UTC+01:00"_s},
        {"first time round", u"2026-10-25T00:30:00Z"_s, u"02:30:00 UTC+01:00"_s},
    };
    forEachRow(rows, [](const auto &row) {
        const auto date = to24HourFormat(row.given, {});
        const auto offset = date->date.toOffsetFromUtc(date->date.offsetFromUtc());
        EXPECT_EQ(offset.toString(u"HH:mm:ss t"), row.expected);
        EXPECT_EQ(date->date.toString(u"MM-dd-yyyy HH:mm:ss"), date->formatted);
    });
    setZone("Australia/Lord_Howe"); // half an hour
    EXPECT_EQ(shown(u"10-04-2026 02:15:00"_s), u"10-04-2026 02:45:00"_s);
}

// Each form beside the library that defines them, which is too slow to read a list with.
TEST_F(LogDatesTest, FormsMeanWhatTheirPatternsMean)
{
    constexpr double Day = 86'400'000.0;
    for (const QString &pattern :
         {u"MM-yyyy-dd HH:mm:ss"_s, u"MM/dd/yyyy hh:mm:ss a"_s, u"dd-MM-yyyy HH:mm:ss"_s,
          u"yyyy-MM-dd'T'HH:mm:ss.SSSZ"_s, u"EEE, dd MMM yyyy HH:mm:ss Z"_s, u"EEE MMM dd HH:mm:ss yyyy"_s,
          u"MMM dd, yyyy hh:mm:ss a"_s}) {
        SCOPED_TRACE(pattern.toStdString());
        UErrorCode status = U_ZERO_ERROR;
        icu::SimpleDateFormat formatter(icu::UnicodeString(pattern.utf16(), int(pattern.size())),
                                        icu::Locale("en_US_POSIX"), status);
        formatter.adoptTimeZone(icu::TimeZone::getGMT()->clone());
        ASSERT_TRUE(U_SUCCESS(status));
        for (double moment = -30'000 * Day; moment < 60'000 * Day; moment += 41.37 * Day) {
            icu::UnicodeString text;
            formatter.format(moment, text);
            const auto written = DateForms::readAs(pattern, QStringView(text.getBuffer(), text.length()));
            ASSERT_TRUE(written);
            EXPECT_EQ(written->seconds, qint64(std::floor(moment / 1000)));
        }
    }
}
