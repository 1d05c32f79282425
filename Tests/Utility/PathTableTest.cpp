#include "Utility/Paths/PathTable.h"
#include "Platform/Home.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/ApplicationFilePath.h"

#include <gtest/gtest.h>

namespace
{
PathTable::Entries engineEntries()
{
    return {{QStringLiteral("ExecuterPathTQL"), QStringLiteral("/engine")},
            {QStringLiteral("ExecuterPathDedupTQL"), QStringLiteral("/dedup-engine")}};
}
} // namespace

TEST(PathTable, AMissingKeyIsItsOwnValue)
{
    const PathTable table([] { return std::optional(engineEntries()); });
    EXPECT_EQ(table.value(QStringLiteral("NoSuchKey"), EUserType::Other), QStringLiteral("NoSuchKey"));
    EXPECT_EQ(qnLocalizedString(QStringLiteral("NoSuchKey")), QStringLiteral("NoSuchKey"));
    EXPECT_EQ(qnLocalizedString(std::nullopt), std::nullopt);
}

TEST(PathTable, ADeduplicatingAccountHasAnEngineOfItsOwn)
{
    const PathTable table([] { return std::optional(engineEntries()); });
    EXPECT_EQ(table.value(QStringLiteral("ExecuterPathTQL"), EUserType::Other), QStringLiteral("/engine"));
    EXPECT_EQ(table.value(QStringLiteral("ExecuterPathTQL"), EUserType::Dedup),
              QStringLiteral("/dedup-engine"));
    const PathTable empty([] { return std::optional(PathTable::Entries()); });
    EXPECT_EQ(empty.value(QStringLiteral("ExecuterPathTQL"), EUserType::Dedup),
              QStringLiteral("ExecuterPathDedupTQL"));
}

TEST(PathTable, LoadsOnceAndTriesAgainUntilItCan)
{
    int loads = 0;
    const PathTable table([&]() -> std::optional<PathTable::Entries> {
        return ++loads < 3 ? std::nullopt : std::optional(engineEntries());
    });
    const QString key = QStringLiteral("ExecuterPathTQL");
    EXPECT_EQ(table.value(key, EUserType::Other), key);
    EXPECT_EQ(table.value(key, EUserType::Other), key);
    EXPECT_EQ(table.value(key, EUserType::Other), QStringLiteral("/engine"));
    EXPECT_EQ(table.value(key, EUserType::Other), QStringLiteral("/engine"));
    EXPECT_EQ(loads, 3);
}

TEST(ApplicationFilePath, EachCaseComesInTheFormThatItsUsersExpect)
{
    const TemporaryHome home;
    const QString root = homeDirectory() + QStringLiteral("/.local/share/Corvane");
    EXPECT_TRUE(ApplicationFilePath(2).path()->startsWith(root)) << "standardised";
    EXPECT_TRUE(ApplicationFilePath(3).path()->startsWith(root)) << "as a file URL gives it";
    EXPECT_TRUE(ApplicationFilePath(5).path()->startsWith(u'~')) << "as stored";
    for (const int number : {21, 26})
        EXPECT_EQ(ApplicationFilePath(number).path()->count(QStringLiteral("%@")), 1) << number;
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
        {QStringLiteral("~"), base},
        {QStringLiteral("~/a//b/./c/../d"), base + QStringLiteral("/a/b/d")},
        {QStringLiteral("~other/a"), QStringLiteral("~other/a")},
        {QStringLiteral("/a/~/b"), QStringLiteral("/a/~/b")},
        {QString(), QString()},
    };
    for (const auto &row : rows)
        EXPECT_EQ(standardizedPath(row.path), row.expected) << row.path.toStdString();
    EXPECT_EQ(homeDirectoryForUser(*consoleUser()), base);
    EXPECT_EQ(homeDirectoryForUser(QStringLiteral("no-such-user")), QString());
}
