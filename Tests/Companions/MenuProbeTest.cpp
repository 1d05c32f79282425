#include "Companions/Console/MenuProbe.h"
#include "Companions/Console/Console.h"

#include <gtest/gtest.h>

TEST(MenuProbe, TitlesAreReadWithoutTheMarkOfAKey)
{
    const struct {
        const char *name, *label, *title;
    } rows[] = {
        {"no mark", "Status", "Status"},
        {"marked first letter", "_Status", "Status"},
        {"marked inside", "Show _progress", "Show progress"},
        {"an underscore itself", "my__file", "my_file"},
        {"underscore and mark", "my__file _x", "my_file x"},
        {"marked underscore at the end", "file__", "file_"},
        {"nothing left to mark", "file_", "file_"},
        {"empty", "", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(MenuProbe::titleOfLabel(QString::fromLatin1(row.label)).toStdString(), row.title);
    }
}

TEST(MenuProbe, LineSaysWhatTheEyeSees)
{
    using Tick = MenuEntry::Tick;
    const QString title = QStringLiteral("Protection");
    const struct {
        const char *name;
        MenuEntry entry;
        const char *line;
    } rows[] = {
        {"plain", {.title = title}, "Protection"},
        {"greyed", {.isEnabled = false, .title = title}, "Protection (off)"},
        {"ticked", {.tick = Tick::On, .title = title}, "[x] Protection"},
        {"not ticked, greyed", {.isEnabled = false, .tick = Tick::Off, .title = title}, "[ ] Protection (off)"},
        {"separator, which has no title to grey", {.isSeparator = true, .isEnabled = false}, "---"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.entry.line().toStdString(), row.line);
    }
}

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
        {"a limit alone", "15", "", 15},
        {"nothing", "", "", 10},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const Wanted wanted = wantedOf(QString::fromLatin1(row.words));
        EXPECT_EQ(wanted.text.toStdString(), row.text);
        EXPECT_EQ(wanted.limit.count(), row.seconds);
    }
}
