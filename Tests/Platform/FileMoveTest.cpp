// Files that get a name only when they are whole, and moves that replace nothing.

#include "Platform/FileMove.h"
#include "Platform/NewFile.h"

#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class FileMoveTest : public testing::Test
{
protected:
    static Descriptor opened(const QString &path) { return openFolder(AT_FDCWD, QFile::encodeName(path)); }

    const TemporaryHome home;
    std::atomic<bool> stop = false;
};

TEST_F(FileMoveTest, OnlyRegularFilesAreOpened)
{
    home.write(u"f"_s, "bytes");
    ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(u"pipe"_s)).constData(), 0600), 0);
    EXPECT_EQ(RegularFile::open(home.path(u"pipe"_s)).error(), EINVAL);
    EXPECT_EQ(RegularFile::open(home.path(u"."_s)).error(), EINVAL);
    EXPECT_EQ(RegularFile::open(u"/dev/zero"_s).error(), EINVAL);
    EXPECT_EQ(RegularFile::open(home.path(u"none"_s)).error(), ENOENT);
    EXPECT_NE(RegularFile::open(home.path(u"f"_s) + QChar(u'\0')).error(), 0);
    EXPECT_EQ(RegularFile::open(home.path(u"f"_s)).beginning(3), QByteArray("byt"));
}

TEST_F(FileMoveTest, AFileIsThereOnlyWhenItIsWholeAndUnderAFreeName)
{
    home.write(u"source"_s, "bytes");
    home.write(u"to/a.zip"_s, "mine");
    const QDir to(home.path(u"to"_s));
    const Descriptor folder = opened(to.path());
    const RegularFile source = RegularFile::open(home.path(u"source"_s));
    FileResult result;
    NewFile file(folder);
    EXPECT_TRUE(file.fill(source, stop));
    EXPECT_EQ(file.publish("..").error(), EINVAL);
    EXPECT_EQ(file.publishFree("a", ".zip", result), QByteArray("a (2).zip"));
    stop = true;
    EXPECT_EQ(NewFile(folder).fill(source, stop).error(), ECANCELED);
    EXPECT_EQ(to.entryList(QDir::Files | QDir::Hidden), (QStringList{u"a (2).zip"_s, u"a.zip"_s}));
    EXPECT_EQ(home.read(u"to/a (2).zip"_s), "bytes");
}

TEST_F(FileMoveTest, AcrossFileSystemsAFileGoesWhenItsCopyStands)
{
    const QTemporaryDir other(u"/dev/shm/corvane-XXXXXX"_s);
    if (!other.isValid())
        GTEST_SKIP() << "no second file system";
    home.write(u"tree/a"_s, "a");
    home.write(u"tree/sub/b"_s, "b");
    home.write(other.filePath(u"taken"_s), "mine");
    const Descriptor from = opened(home.path(u"."_s));
    const Descriptor to = opened(other.path());
    EXPECT_EQ(moveEntry(from, "tree", to, "taken", stop).error(), EEXIST);
    EXPECT_TRUE(moveEntry(from, "tree", to, "tree", stop));
    EXPECT_FALSE(QFile::exists(home.path(u"tree"_s)));
    EXPECT_EQ(home.read(other.filePath(u"tree/sub/b"_s)), "b");
    home.write(u"taken"_s, "yours");
    EXPECT_EQ(moveEntry(from, "taken", to, "taken", stop).error(), EEXIST);
    EXPECT_EQ(home.read(other.filePath(u"taken"_s)), "mine");
    EXPECT_EQ(home.read(u"taken"_s), "yours");
}
