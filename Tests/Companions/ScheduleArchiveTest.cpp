#include "Companions/Common/ScheduleArchive.h"
#include "Tests/Support/ForEachRow.h"

TEST(ScheduleArchive, NextOccurrence)
{
    const QDateTime now(QDate(2026, 11, 20), QTime(12, 0), Qt::UTC); // a Friday
    const auto at = [](int month, int day, int hour) {
        return QDateTime(QDate(2026, month, day), QTime(hour, 0), Qt::UTC);
    };
    const struct {
        const char *name;
        QDateTime last;
        Frequency frequency;
        QDateTime next;
    } rows[] = {
        {"still to come", at(11, 21, 2), Frequency::Daily, at(11, 21, 2)},
        {"this very moment", now, Frequency::Daily, at(11, 21, 12)},
        {"hours missed", at(11, 20, 3), Frequency::Hourly, at(11, 20, 13)},
        {"week", at(11, 6, 12), Frequency::Weekly, at(11, 27, 12)},
        {"month", at(9, 30, 9), Frequency::Monthly, at(11, 30, 9)},
        {"over the weekend", at(11, 20, 9), Frequency::Weekdays, at(11, 23, 9)},
        {"does not repeat", at(11, 19, 9), Frequency::None, at(11, 19, 9)},
    };
    forEachRow(rows,
               [&now](const auto &row) { EXPECT_EQ(nextOccurrence(row.last, row.frequency, now), row.next); });
}
