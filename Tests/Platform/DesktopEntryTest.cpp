#include "Platform/DesktopEntry.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(DesktopEntry, ExecOfAPathInTheFile)
{
    const std::pair<QString, QByteArray> rows[] = {
        {u"/opt/c/monitor"_s, "Exec=/opt/c/monitor"},
        {u"/opt/my files/monitor "_s, "Exec=\"/opt/my files/monitor \""},
        {u"/opt/100%f/monitor"_s, "Exec=/opt/100%%f/monitor"},
        {u"/opt/a\"b"_s, R"(Exec="/opt/a\\"b")"},
        {u"/opt/it's"_s, "Exec=\"/opt/it's\""},
        {u"/opt/$HOME`id`"_s, R"(Exec="/opt/\\$HOME\\`id\\`")"},
        {u"/opt/a\\b"_s, R"(Exec="/opt/a\\\\b")"},
        {u"/opt/a\nb\tc"_s, R"(Exec="/opt/a\nb\tc")"},
        {u"/opt/バックアップ/é"_s, "Exec=/opt/バックアップ/é"},
    };
    for (const auto &[path, line] : rows) {
        const QByteArray file = DesktopEntry::serialize({{u"Exec"_s, DesktopEntry::execOfWords({path})}});
        EXPECT_EQ(file.toStdString(), "[Desktop Entry]\n" + line.toStdString() + "\n");
        EXPECT_EQ(DesktopEntry::wordsOfExec(DesktopEntry::parse(file)->value(u"Exec"_s)), QStringList{path});
    }
}

TEST(DesktopEntry, WordsOfOthersEntries)
{
    const std::tuple<const char *, QString, std::optional<QStringList>> rows[] = {
        {"field codes go", u"app %U --x %%"_s, QStringList{u"app"_qs, u"--x"_qs, u"%"_qs}},
        {"code inside a word", u"app --file=%f"_s, QStringList{u"app"_qs, u"--file="_qs}},
        {"quoted and empty words", u"\"a b\" \"\" c"_s, QStringList{u"a b"_qs, QString(), u"c"_qs}},
        {"open quote", u"\"a b"_s, std::nullopt},
        {"nothing", u"  "_s, std::nullopt},
        {"only a code", u"%f"_s, std::nullopt},
        {"ends in a percent", u"app%"_s, QStringList{u"app%"_qs}},
    };
    for (const auto &[name, exec, words] : rows)
        EXPECT_EQ(DesktopEntry::wordsOfExec(exec), words) << name;
}

TEST(DesktopEntry, OnlyItsOwnGroupIsRead)
{
    const auto keys = DesktopEntry::parse("# head\nExec=before\n[Desktop Entry]\r\n# Exec=no\nExec = one\r\n"
                                          "Exec=two\nbroken line\n=x\n[Desktop Action a]\nExec=action\n");
    EXPECT_EQ(keys, (DesktopEntry::Keys{{u"Exec"_s, u"one"_s}}));
    for (const char *file : {"Exec=a\n", "[Desktop Entry]\nName=\xff\n", ""})
        EXPECT_FALSE(DesktopEntry::parse(file)) << file;
}
