#include "Platform/FileWatch.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class FileWatchTest : public testing::Test
{
protected:
    [[nodiscard]] bool isTold()
    {
        return waitUntil([&] { return std::exchange(told, 0) > 0; });
    }
    /// Lets everything arrive that is on its way.
    [[nodiscard]] bool isQuiet()
    {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
        return std::exchange(told, 0) == 0;
    }
    bool move(const char *from, const char *to)
    {
        return QDir().rename(home.path(QLatin1StringView(from)), home.path(QLatin1StringView(to)));
    }

    TemporaryHome home;
    int told = 0;
    const QString file = home.path(u"a/b/port"_s);
    FileWatch watch{file, [this] { ++told; }};
};
} // namespace

TEST_F(FileWatchTest, TellsOfEachWayInWhichAFileChanges)
{
    home.write(file, "1"); // with both folders
    EXPECT_TRUE(isTold());
    const std::pair<const char *, std::function<void()>> rows[] = {
        {"written in place", [&] { home.write(file, "2"); }},
        {"replaced", [&] { home.write(u"a/b/new"_s, "3"), QFile::remove(file), move("a/b/new", "a/b/port"); }},
        {"permissions", [&] { QFile::setPermissions(file, QFile::ReadOwner); }},
        {"removed", [&] { QFile::remove(file); }},
        {"made again", [&] { home.write(file, "4"); }},
        {"its folder moved away", [&] { move("a/b", "a/c"); }},
        {"another folder in its place", [&] { home.write(u"a/d/port"_s, "5"), move("a/d", "a/b"); }},
        {"a folder above moved away", [&] { move("a", "e"); }},
        {"and back", [&] { move("e", "a"); }},
        {"all removed", [&] { QDir(home.path(u"a"_s)).removeRecursively(); }},
        {"and made again", [&] { home.write(file, "6"); }},
    };
    for (const auto &[name, change] : rows) {
        std::ignore = isQuiet();
        change();
        EXPECT_TRUE(isTold()) << name;
    }
}

TEST_F(FileWatchTest, OtherFilesAreNoNews)
{
    home.write(file, "1");
    EXPECT_TRUE(isTold());
    std::ignore = isQuiet();
    home.write(u"a/b/trace"_s, "x");
    home.write(u"a/other"_s, "x");
    home.write(u"other"_s, "x");
    EXPECT_EQ(home.read(file), "1");
    EXPECT_TRUE(isQuiet());
}

TEST_F(FileWatchTest, MayGoInItsOwnCall)
{
    std::unique_ptr<FileWatch> own;
    own = std::make_unique<FileWatch>(file, [&] { own.reset(); });
    home.write(file, "1");
    EXPECT_TRUE(waitUntil([&] { return !own; }));
    home.write(file, "2");
    EXPECT_TRUE(isTold());
}
