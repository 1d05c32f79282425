#include "Utility/Paths/PathTable.h"
#include "Platform/Home.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/ApplicationFilePath.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
PathTable::Entries engineEntries()
{
    return {{u"ExecuterPathTQL"_s, u"/engine"_s}, {u"ExecuterPathDedupTQL"_s, u"/dedup-engine"_s}};
}
} // namespace

TEST(PathTable, AMissingKeyIsItsOwnValue)
{
    const PathTable table([] { return std::optional(engineEntries()); });
    EXPECT_EQ(table.value(u"NoSuchKey"_s, EUserType::Other), u"NoSuchKey"_s);
    EXPECT_EQ(qnLocalizedString(u"NoSuchKey"_s), u"NoSuchKey"_s);
    EXPECT_EQ(qnLocalizedString(std::nullopt), std::nullopt);
}

TEST(PathTable, ADeduplicatingAccountHasAnEngineOfItsOwn)
{
    const PathTable table([] { return std::optional(engineEntries()); });
    EXPECT_EQ(table.value(u"ExecuterPathTQL"_s, EUserType::Other), u"/engine"_s);
    EXPECT_EQ(table.value(u"ExecuterPathTQL"_s, EUserType::Dedup), u"/dedup-engine"_s);
    const PathTable empty([] { return std::optional(PathTable::Entries()); });
    EXPECT_EQ(empty.value(u"ExecuterPathTQL"_s, EUserType::Dedup), u"ExecuterPathDedupTQL"_s);
}

TEST(PathTable, LoadsOnceAndTriesAgainUntilItCan)
{
    int loads = 0;
    const PathTable table([&]() -> std::optional<PathTable::Entries> {
        return ++loads < 3 ? std::nullopt : std::optional(engineEntries());
    });
    const QString key = u"ExecuterPathTQL"_s;
    EXPECT_EQ(table.value(key, EUserType::Other), key);
    EXPECT_EQ(table.value(key, EUserType::Other), key);
    EXPECT_EQ(table.value(key, EUserType::Other), u"/engine"_s);
    EXPECT_EQ(table.value(key, EUserType::Other), u"/engine"_s);
    EXPECT_EQ(loads, 3);
}

TEST(ApplicationFilePath, EachCaseComesInTheFormThatItsUsersExpect)
{
    const TemporaryHome home;
    const QString root = homeDirectory() + u"/.local/share/Corvane"_s;
    EXPECT_TRUE(ApplicationFilePath(2).path()->startsWith(root)) << "standardised";
    EXPECT_TRUE(ApplicationFilePath(3).path()->startsWith(root)) << "as a file URL gives it";
    EXPECT_TRUE(ApplicationFilePath(5).path()->startsWith(u'~')) << "as stored";
    for (const int number : {21, 26})
        EXPECT_EQ(ApplicationFilePath(number).path()->count(u"%@"_s), 1) << number;
    EXPECT_EQ(ApplicationFilePath(6).path(), standardizedPath(*ApplicationFilePath(29).path()));
    for (int number = 0; number < 30; ++number)
        EXPECT_TRUE(ApplicationFilePath(number).path()->size() > 3) << number;
    EXPECT_EQ(ApplicationFilePath(-1).path(), std::nullopt);
    EXPECT_EQ(ApplicationFilePath(30).path(), std::nullopt);
}

TEST(Home, StandardisesByTextAlone)
{
    const TemporaryHome home;
    const QString base = homeDirectory();
    const struct {
        QString path, expected;
    } rows[] = {
        {u"~"_s, base},
        {u"~/a//b/./c/../d"_s, base + u"/a/b/d"_s},
        {u"~other/a"_s, u"~other/a"_s},
        {u"/a/~/b"_s, u"/a/~/b"_s},
        {QString(), QString()},
    };
    for (const auto &row : rows)
        EXPECT_EQ(standardizedPath(row.path), row.expected) << row.path.toStdString();
    EXPECT_EQ(homeDirectoryForUser(*consoleUser()), base);
    EXPECT_EQ(homeDirectoryForUser(u"no-such-user"_s), QString());
}
