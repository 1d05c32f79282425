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
