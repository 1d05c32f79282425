// How the console reads its commands and what it has seen: a fault here could let a tale pass that should fail.

#include "Companions/Console/Console.h"
#include "Tests/Support/ForEachRow.h"

using namespace Qt::StringLiterals;

TEST(Console, ExpectationsEndWithTheirLimit)
{
    const struct {
        const char *name, *words, *text;
        int seconds;
    } rows[] = {
        {"no limit", "Show progress (off)", "Show progress (off)", 10},
        {"limit", "Show progress 60", "Show progress", 60},
        {"a number that is the text", "\"0\"", "0", 10},
        {"a number that is the text, and a limit", "\"backup 7\" 3", "backup 7", 3},
        {"a date is no limit", "start on 11-23-2026", "start on 11-23-2026", 10},
    };
    forEachRow(rows, [](const auto &row) {
        const Wanted wanted = wantedOf(QString::fromLatin1(row.words));
        EXPECT_EQ(wanted.text.toStdString(), row.text);
        EXPECT_EQ(wanted.limit.count(), row.seconds);
    });
}

TEST(Console, RowsAndNumbersOfLogsAreNoLimits)
{
    const struct {
        const char *name, *words;
        int number;
        const char *text;
        int seconds;
    } rows[] = {
        {"a number alone", "41", 41, "", 10},
        {"a number and a limit", "0 60", 0, "", 60},
        {"a row and its text", "2 Online backup | Success", 2, "Online backup | Success", 10},
        {"a text that is a number", "2 \"1248\" 3", 2, "1248", 3},
    };
    forEachRow(rows, [](const auto &row) {
        const auto wanted = rowWantedOf(QString::fromLatin1(row.words));
        ASSERT_TRUE(wanted);
        EXPECT_EQ(wanted->number, row.number);
        EXPECT_EQ(wanted->wanted.text.toStdString(), row.text);
        EXPECT_EQ(wanted->wanted.limit.count(), row.seconds);
    });
    for (const char *words : {"", "many 10", "-1 x"})
        EXPECT_FALSE(rowWantedOf(QString::fromLatin1(words))) << words;
}

TEST(SeenLines, AreTakenInTheirOrderAndOnce)
{
    SeenLines lines;
    for (const char *line : {"core 1", "noise", "pause", "core 2"})
        lines.add(QString::fromLatin1(line));
    EXPECT_FALSE(lines.take(u"resume"_s));
    EXPECT_TRUE(lines.take(u"pause"_s)) << "one that is missed takes nothing away";
    EXPECT_FALSE(lines.take(u"core 1"_s)) << "it came before";
    EXPECT_TRUE(lines.holds(u"core 2"_s));
    EXPECT_TRUE(lines.take(u"core"_s));
    EXPECT_FALSE(lines.holds(u"core"_s));
}
