// Which day files are read, and in which order.

#include "Classes/ACTIVITY_LOGS/LogListing.h"

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
    EXPECT_EQ(LogListing::daysOf(QDate(2026, 2, 28), QDate(2026, 3, 1)),
              (QStringList{u"02-28-2026"_s, u"03-01-2026"_s}));
}
