// What the names of day files, session logs and operations tell.

#include "Classes/ACTIVITY_LOGS/LogFileNames.h"
#include "Classes/ACTIVITY_LOGS/LogOperations.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

using namespace Qt::StringLiterals;

TEST(LogNamesTest, ADayFileTellsItsDay)
{
    struct Expected {
        QDate day;
        QString plainName;
    };
    const QDate day(2026, 9, 24);
    const Row<QString, Expected> rows[] = {
        {"plain", u"09-24-2026.xml"_s, {day, u"09-24-2026.xml"_s}},
        {"protection", u"09-24-2026_cdp.xml"_s, {day, u"09-24-2026.xml"_s}},
        {"sync", u"09-24-2026_sync.xml"_s, {day, u"09-24-2026.xml"_s}},
        {"sync before protection", u"09-24-2026_sync_cdp.xml"_s, {{}, u"09-24-2026_sync.xml"_s}},
        {"no day", u"02-29-2026.xml"_s, {{}, u"02-29-2026.xml"_s}},
        {"other digits", u"０9-24-2026.xml"_s, {{}, u"０9-24-2026.xml"_s}},
        {"no name", u"backup.xml"_s, {{}, u"backup.xml"_s}},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(LogFileNames::parseDateFromFileName(row.given).value_or(QDate()), row.expected.day);
        EXPECT_EQ(LogFileNames::adjustFileNameForCDPAndSync(row.given), row.expected.plainName);
    });
    EXPECT_EQ(LogFileNames::dayName(QDate(2026, 9, 4)), u"09-04-2026"_s);
}

TEST(LogNamesTest, ASessionLogTellsItsMomentByItsWholeName)
{
    const Row<const char *, bool> rows[] = {
        {"whole", "09-24-2026-23-59-59", true},        {"no such hour", "09-24-2026-24-00-00", false},
        {"no such day", "06-31-2026-10-00-00", false}, {"an ending", "09-24-2026-10-11-12_sync", false},
        {"a sign", "09-24-2026-+1-11-12", false},
    };
    forEachRow(rows, [](const auto &row) {
        const QString name = QString::fromLatin1(row.given);
        EXPECT_EQ(LogFileNames::getLogDate(name), row.expected ? std::optional(name) : std::nullopt);
    });
    EXPECT_EQ(LogFileNames::getLogDate(std::nullopt), std::nullopt);
}

TEST(LogNamesTest, OperationsHaveNumbersAndNames)
{
    const Row<std::optional<QString>, QString> numbers[] = {
        {"any case", u"Scheduled Backup"_s, u"2"_s},
        {"unknown", u"Cloud"_s, u"12"_s},
        {"none", std::nullopt, u"12"_s},
        {"the last", u"network and external drive scheduled backup"_s, u"24"_s},
    };
    forEachRow(numbers, [](const auto &row) {
        EXPECT_EQ(LogOperations::getOptypeForOperationName(row.given), row.expected);
    });
    const Row<QString, QString> names[] = {
        {"without a way in", u"18"_s, u"Online delete"_s},
        {"the last", u"24"_s, u"Network and external drive backup"_s},
        {"a gap", u"17"_s, u"Corvane"_s},
        {"no number", u"x"_s, {}},
        {"empty", {}, {}},
    };
    forEachRow(names,
               [](const auto &row) { EXPECT_EQ(LogOperations::operationName(row.given), row.expected); });
}
