#include "Platform/AtomicFile.h"
#include "Tests/Support/PrintQt.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
class AtomicFileTest : public testing::Test
{
protected:
    [[nodiscard]] QString path(const char *name) const { return m_home.filePath(QString::fromLatin1(name)); }
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_home.path()).entryList(QDir::Files | QDir::Hidden);
    }

    [[nodiscard]] mode_t modeOf(const char *name) const
    {
        struct stat facts {
        };
        return stat(qPrintable(path(name)), &facts) == 0 ? facts.st_mode & 07777 : 0;
    }

    QTemporaryDir m_home;
};
} // namespace

TEST_F(AtomicFileTest, AFullDiskLosesNothingOfAnySize)
{
    // For a moment no file of this process grows: that is a full disk, whoever runs the test.
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    for (const int size : {1, 16'384, 16'385, 100'000}) {
        ASSERT_TRUE(AtomicFile::write(path("kept"), "old"));
        const rlimit full{rlim_t(size - 1), old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        EXPECT_EQ(AtomicFile::write(path("kept"), QByteArray(size, 'x')).error(), EFBIG);
        EXPECT_EQ(AtomicFile::write(path("new"), QByteArray(size, 'x')).reason(), u"File too large"_s);
        setrlimit(RLIMIT_FSIZE, &old);
        EXPECT_EQ(AtomicFile::read(path("kept"), 100), QByteArray("old")) << size;
        EXPECT_EQ(names(), QStringList{u"kept"_s}) << size;
        ASSERT_TRUE(AtomicFile::write(path("kept"), QByteArray(size, 'x')));
        EXPECT_EQ(AtomicFile::read(path("kept"), 200'000), QByteArray(size, 'x'));
    }
    std::signal(SIGXFSZ, oldHandler);
    ASSERT_TRUE(AtomicFile::write(path("kept"), {}));
    EXPECT_EQ(AtomicFile::read(path("kept"), 0), QByteArray());
}

TEST_F(AtomicFileTest, RefusesPlacesThatCannotHoldAFile)
{
    ASSERT_TRUE(AtomicFile::write(path("file"), "old"));
    ASSERT_TRUE(QDir().mkdir(path("folder")));
    ASSERT_TRUE(QFile::link(path("round"), path("round")));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    const std::pair<QString, int> rows[] = {
        {path("file/a"), ENOTDIR}, {path("folder"), EISDIR},
        {path("folder/"), EISDIR}, {path("round"), ELOOP},
        {path("pipe"), EINVAL},    {u"relative"_s, EINVAL},
        {QString(), EINVAL},       {path("file") + QChar(u'\0') + u'x', EINVAL},
        {u":/resource"_s, EINVAL}, {path("n") + QString(255, u'n'), ENAMETOOLONG},
    };
    for (const auto &[place, error] : rows)
        EXPECT_EQ(AtomicFile::write(place, "x").error(), error) << place.toStdString();
    EXPECT_EQ(AtomicFile::read(path("file"), 100), QByteArray("old"));
    EXPECT_EQ(names(), QStringList{u"file"_s});
    EXPECT_FALSE(QFile::exists(u"relative"_s));
    EXPECT_EQ(AtomicFile::makeFolders(u"relative"_s).error(), EINVAL);
    EXPECT_EQ(AtomicFile::remove(path("missing")).error(), ENOENT);
}

TEST_F(AtomicFileTest, WhatIsMadeIsPrivateAndWhatOthersMadeKeepsItsMode)
{
    const mode_t mask = umask(0);
    ASSERT_TRUE(AtomicFile::write(path("a/b/file"), "x"));
    ASSERT_TRUE(AtomicFile::write(path("program"), "x", {.newFileMode = 0700}));
    for (const auto &[name, mode] :
         {std::pair{"a", 0700U}, {"a/b", 0700}, {"a/b/file", 0600}, {"program", 0700}})
        EXPECT_EQ(modeOf(name), mode) << name;
    umask(077);
    for (const mode_t mode : {0644U, 0666U, 0640U}) {
        ASSERT_EQ(chmod(qPrintable(path("program")), mode), 0);
        ASSERT_TRUE(AtomicFile::write(path("program"), "new"));
        EXPECT_EQ(modeOf("program"), mode);
    }
    umask(mask);
}

TEST_F(AtomicFileTest, AnotherOwnerOrAReadOnlyFile)
{
    const QByteArray file = path("file").toLocal8Bit();
    ASSERT_TRUE(AtomicFile::write(path("file"), "old"));
    if (geteuid() == 0) { // who may write everything
        ASSERT_EQ(chown(file, 1234, 5678), 0);
        ASSERT_TRUE(AtomicFile::write(path("file"), "new"));
        struct stat facts {
        };
        ASSERT_EQ(stat(file, &facts), 0);
        EXPECT_EQ(std::pair(facts.st_uid, facts.st_gid), std::pair(1234U, 5678U));
    } else {
        ASSERT_EQ(chmod(file, 0400), 0);
        EXPECT_EQ(AtomicFile::write(path("file"), "new").error(), EACCES);
        EXPECT_EQ(AtomicFile::read(path("file"), 100), QByteArray("old"));
    }
}

TEST_F(AtomicFileTest, LinksStay)
{
    ASSERT_TRUE(AtomicFile::write(path("folder/target"), "old"));
    ASSERT_TRUE(QFile::link(u"folder/target"_s, path("relative")));
    ASSERT_TRUE(QFile::link(path("relative"), path("of a link")));
    ASSERT_TRUE(QFile::link(path("not yet/there"), path("dangling")));
    for (const auto &[link, target] :
         {std::pair{"of a link", "folder/target"}, {"dangling", "not yet/there"}}) {
        ASSERT_TRUE(AtomicFile::write(path(link), "new")) << link;
        EXPECT_TRUE(QFileInfo(path(link)).isSymLink()) << link;
        ASSERT_TRUE(AtomicFile::remove(path(link))) << "the link alone";
        EXPECT_EQ(AtomicFile::read(path(target), 100), QByteArray("new")) << link;
    }
}

TEST_F(AtomicFileTest, LeftoversGoAndLivingWritersStay)
{
    const QString leftover = path(".file.corvane-new-0");
    ASSERT_TRUE(AtomicFile::write(leftover, "cut"));
    ASSERT_TRUE(AtomicFile::write(path(".file.corvane-new-1"), "cut with it"));
    ASSERT_TRUE(AtomicFile::write(path("file"), "new"));
    EXPECT_EQ(names(), QStringList{u"file"_s});
    // A lock on it is another writer at work.
    ASSERT_TRUE(AtomicFile::write(leftover, "theirs"));
    const int theirs = open(qPrintable(leftover), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(theirs, LOCK_EX), 0);
    ASSERT_TRUE(AtomicFile::write(path("file"), "newer"));
    EXPECT_EQ(AtomicFile::read(leftover, 100), QByteArray("theirs"));
    close(theirs);
    EXPECT_TRUE(AtomicFile::write(path("x/") + QString(255, u'n'), "x")) << "as long as a name may be";
}

TEST_F(AtomicFileTest, TextComesBackAndWhatIsNoneOrTooLongIsRefused)
{
    for (const QString &text : {u"0\n é\U0001F600"_s, QString()}) {
        ASSERT_TRUE(AtomicFile::writeText(path("a"), text));
        EXPECT_EQ(AtomicFile::read(path("a"), 100), text.toUtf8());
        EXPECT_EQ(AtomicFile::readText(path("a")), text);
    }
    ASSERT_TRUE(AtomicFile::write(path("latin1"), "caf\xE9"));
    ASSERT_TRUE(AtomicFile::write(path("cut"), "\xF0\x9F\x98"));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    for (const char *name : {"latin1", "cut", "missing", "pipe", "."})
        EXPECT_FALSE(AtomicFile::readText(path(name))) << name;
    ASSERT_TRUE(AtomicFile::write(path("five"), "12345"));
    EXPECT_EQ(AtomicFile::readText(path("five"), 5), u"12345"_s);
    EXPECT_FALSE(AtomicFile::readText(path("five"), 4));
}
