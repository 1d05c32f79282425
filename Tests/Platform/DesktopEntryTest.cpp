#include "Platform/DesktopEntry.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(DesktopEntry, ExecOfAPathInTheFile)
{
    const std::tuple<const char *, QString, QByteArray> rows[] = {
        {"plain", u"/opt/c/monitor"_s, "Exec=/opt/c/monitor"},
        {"blank", u"/opt/my files/monitor"_s, "Exec=\"/opt/my files/monitor\""},
        {"percent", u"/opt/100%f/monitor"_s, "Exec=/opt/100%%f/monitor"},
        {"double quote", u"/opt/a\"b"_s, R"(Exec="/opt/a\\"b")"},
        {"single quote", u"/opt/it's"_s, "Exec=\"/opt/it's\""},
        {"dollar and backtick", u"/opt/$HOME`id`"_s, R"(Exec="/opt/\\$HOME\\`id\\`")"},
        {"backslash", u"/opt/a\\b"_s, R"(Exec="/opt/a\\\\b")"},
        {"newline", u"/opt/a\nb"_s, R"(Exec="/opt/a\nb")"},
        {"tab", u"/opt/a\tb"_s, R"(Exec="/opt/a\tb")"},
        {"non-ASCII", u"/opt/バックアップ/é"_s, "Exec=/opt/バックアップ/é"},
        {"blank at the end", u"/opt/a "_s, R"(Exec="/opt/a ")"},
    };
    for (const auto &[name, path, line] : rows) {
        SCOPED_TRACE(name);
        const QString exec = DesktopEntry::execOfWords({path});
        const QByteArray file = DesktopEntry::serialize({{u"Exec"_s, exec}});
        EXPECT_EQ(file.toStdString(), "[Desktop Entry]\n" + line.toStdString() + "\n");
        const auto keys = DesktopEntry::parse(file);
        ASSERT_TRUE(keys);
        EXPECT_EQ(DesktopEntry::wordsOfExec(keys->value(u"Exec"_s)), QStringList{path});
    }
}

TEST(DesktopEntry, PlainValuesKeepTheirBlanks)
{
    const DesktopEntry::Keys keys{{u"TryExec"_s, u" a b "_s}, {u"Name"_s, u"\\s"_s}};
    EXPECT_EQ(DesktopEntry::serialize(keys).toStdString(), "[Desktop Entry]\nName=\\\\s\nTryExec=\\sa b\\s\n");
    EXPECT_EQ(DesktopEntry::parse(DesktopEntry::serialize(keys)), keys);
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
    ASSERT_TRUE(keys);
    EXPECT_EQ(*keys, (DesktopEntry::Keys{{u"Exec"_s, u"one"_s}}));
    EXPECT_FALSE(DesktopEntry::parse("Exec=a\n"));
    EXPECT_FALSE(DesktopEntry::parse("[Desktop Entry]\nName=\xff\n"));
    EXPECT_FALSE(DesktopEntry::parse(QByteArray()));
}
