#include "Platform/DesktopEntry.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

TEST(DesktopEntry, ExecOfAPathInTheFile)
{
    const struct {
        const char *name;
        QString path;
        QByteArray line;
    } rows[] = {
        {"plain", QStringLiteral("/opt/c/monitor"), "Exec=/opt/c/monitor"},
        {"blank", QStringLiteral("/opt/my files/monitor"), "Exec=\"/opt/my files/monitor\""},
        {"percent", QStringLiteral("/opt/100%f/monitor"), "Exec=/opt/100%%f/monitor"},
        {"double quote", QStringLiteral("/opt/a\"b"), R"(Exec="/opt/a\\"b")"},
        {"single quote", QStringLiteral("/opt/it's"), "Exec=\"/opt/it's\""},
        {"dollar and backtick", QStringLiteral("/opt/$HOME`id`"), R"(Exec="/opt/\\$HOME\\`id\\`")"},
        {"backslash", QStringLiteral("/opt/a\\b"), R"(Exec="/opt/a\\\\b")"},
        {"newline", QStringLiteral("/opt/a\nb"), R"(Exec="/opt/a\nb")"},
        {"tab", QStringLiteral("/opt/a\tb"), R"(Exec="/opt/a\tb")"},
        {"non-ASCII", QStringLiteral("/opt/バックアップ/é"), "Exec=/opt/バックアップ/é"},
        {"blank at the end", QStringLiteral("/opt/a "), R"(Exec="/opt/a ")"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString exec = DesktopEntry::execOfWords({row.path});
        const QByteArray file = DesktopEntry::serialize({{QStringLiteral("Exec"), exec}});
        EXPECT_EQ(file.toStdString(), "[Desktop Entry]\n" + row.line.toStdString() + "\n");
        const auto keys = DesktopEntry::parse(file);
        ASSERT_TRUE(keys);
        EXPECT_EQ(DesktopEntry::wordsOfExec(keys->value(QStringLiteral("Exec"))), QStringList{row.path});
    }
}

TEST(DesktopEntry, PlainValuesKeepTheirBlanks)
{
    const DesktopEntry::Keys keys{{QStringLiteral("TryExec"), QStringLiteral(" a b ")},
                                  {QStringLiteral("Name"), QStringLiteral("\\s")}};
    EXPECT_EQ(DesktopEntry::serialize(keys).toStdString(), "[Desktop Entry]\nName=\\\\s\nTryExec=\\sa b\\s\n");
    EXPECT_EQ(DesktopEntry::parse(DesktopEntry::serialize(keys)), keys);
}

TEST(DesktopEntry, WordsOfOthersEntries)
{
    const struct {
        const char *name;
        QString exec;
        std::optional<QStringList> words;
    } rows[] = {
        {"field codes go", QStringLiteral("app %U --x %%"), QStringList{u"app"_qs, u"--x"_qs, u"%"_qs}},
        {"code inside a word", QStringLiteral("app --file=%f"), QStringList{u"app"_qs, u"--file="_qs}},
        {"quoted and empty words", QStringLiteral("\"a b\" \"\" c"),
         QStringList{u"a b"_qs, QString(), u"c"_qs}},
        {"open quote", QStringLiteral("\"a b"), std::nullopt},
        {"nothing", QStringLiteral("  "), std::nullopt},
        {"only a code", QStringLiteral("%f"), std::nullopt},
        {"ends in a percent", QStringLiteral("app%"), QStringList{u"app%"_qs}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(DesktopEntry::wordsOfExec(row.exec), row.words);
    }
}

TEST(DesktopEntry, OnlyItsOwnGroupIsRead)
{
    const auto keys = DesktopEntry::parse("# head\nExec=before\n[Desktop Entry]\r\n# Exec=no\nExec = one\r\n"
                                          "Exec=two\nbroken line\n=x\n[Desktop Action a]\nExec=action\n");
    ASSERT_TRUE(keys);
    EXPECT_EQ(*keys, (DesktopEntry::Keys{{QStringLiteral("Exec"), QStringLiteral("one")}}));
    EXPECT_FALSE(DesktopEntry::parse("Exec=a\n"));
    EXPECT_FALSE(DesktopEntry::parse("[Desktop Entry]\nName=\xff\n"));
    EXPECT_FALSE(DesktopEntry::parse(QByteArray()));
}
