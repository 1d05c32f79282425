// Which day files are read, in which order and how many at once.

#include "Classes/ACTIVITY_LOGS/LogListing.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(LogListingTest, ADayIsOneEntryAndTheNewestComesFirst)
{
    const QStringList names{u"backup.xml"_s,          u"09-24-2026_cdp.xml"_s, u"09-24-2026_sync.xml"_s,
                            u"12-31-2025.xml"_s,      u"10-01-2026.xml"_s,     u"02-30-2026.xml"_s,
                            u"09-24-2026_other.xml"_s};
    const auto days = LogListing::newestFirst(names);
    const std::vector<UnparsedLog> expected{{u"10-01-2026.xml"_s, QDate(2026, 10, 1)},
                                            {u"09-24-2026.xml"_s, QDate(2026, 9, 24)},
                                            {u"12-31-2025.xml"_s, QDate(2025, 12, 31)}};
    EXPECT_EQ(days, expected);
    EXPECT_EQ(LogListing::everyBase(names),
              (QStringList{u"backup"_s, u"09-24-2026"_s, u"12-31-2025"_s, u"10-01-2026"_s, u"02-30-2026"_s,
                           u"09-24-2026_other"_s}));
}

TEST(LogListingTest, APageIsCountedFromTheFrontOfWhatIsLeft)
{
    struct Asked {
        int page;
        std::size_t unparsed;
    };
    const Row<Asked, std::size_t> rows[] = {
        {"no page", {0, 45}, 0},
        {"a page before the first", {-3, 45}, 0},
        {"nothing left", {1, 0}, 0},
        {"first of few", {1, 5}, 5},
        {"first of many", {1, 45}, 20},
        {"second, short", {2, 25}, 5},
        {"third, past the end of the list", {3, 20}, 20},
        {"the last number there is", {std::numeric_limits<int>::max(), 7}, 7},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(LogListing::pageLength(row.given.page, row.given.unparsed, 20), row.expected);
    });
}

TEST(LogListingTest, APeriodIsWalkedByDaysOfTheCalendar)
{
    EXPECT_EQ(LogListing::daysOf(QDate(2026, 2, 27), QDate(2026, 3, 1)),
              (QStringList{u"02-27-2026"_s, u"02-28-2026"_s, u"03-01-2026"_s}));
    EXPECT_EQ(LogListing::daysOf(QDate(2026, 3, 1), QDate(2026, 2, 27)), QStringList());
    EXPECT_EQ(LogListing::daysOf(QDate(2026, 3, 1), QDate()), QStringList());
}
