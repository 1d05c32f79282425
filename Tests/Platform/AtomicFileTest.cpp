#include "Platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

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

    QTemporaryDir m_home;
};
} // namespace

TEST_F(AtomicFileTest, TextComesBackToTheByte)
{
    ASSERT_TRUE(AtomicFile::writeText(path("a"), u"0\n é\U0001F600"_s));
    EXPECT_EQ(AtomicFile::read(path("a"), 100), QByteArray("0\n \xC3\xA9\xF0\x9F\x98\x80"));
    EXPECT_EQ(AtomicFile::readText(path("a")), u"0\n é\U0001F600"_s);
    ASSERT_TRUE(AtomicFile::writeText(path("a"), QString()));
    EXPECT_EQ(AtomicFile::readText(path("a")), QString());
}

TEST_F(AtomicFileTest, FailedWriteLosesNothing)
{
    ASSERT_TRUE(AtomicFile::write(path("kept"), "old"));
    // A full disk: for a moment no file of this process grows past a thousand bytes.
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit full{1000, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_FALSE(AtomicFile::write(path("kept"), QByteArray(100'000, 'x')));
    EXPECT_FALSE(AtomicFile::write(path("new"), QByteArray(100'000, 'x')));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(AtomicFile::read(path("kept"), 100), QByteArray("old"));
    EXPECT_EQ(names(), QStringList{u"kept"_s});
}

TEST_F(AtomicFileTest, RefusesPlacesThatCannotHoldAFile)
{
    ASSERT_TRUE(AtomicFile::write(path("file"), "old"));
    ASSERT_TRUE(QDir().mkdir(path("folder")));
    for (const char *place : {"missing/a", "file/a", "folder"}) {
        SCOPED_TRACE(place);
        EXPECT_FALSE(AtomicFile::write(path(place), "x"));
    }
    EXPECT_EQ(AtomicFile::read(path("file"), 100), QByteArray("old"));
    EXPECT_EQ(names(), QStringList{u"file"_s});
}

TEST_F(AtomicFileTest, KeepsLinkAndPermissions)
{
    ASSERT_TRUE(AtomicFile::write(path("target"), "old"));
    ASSERT_TRUE(QFile::setPermissions(path("target"), QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::link(path("target"), path("link")));
    ASSERT_TRUE(AtomicFile::write(path("link"), "new"));
    EXPECT_EQ(QFile::symLinkTarget(path("link")), path("target"));
    EXPECT_EQ(AtomicFile::read(path("target"), 100), QByteArray("new"));
    EXPECT_FALSE(QFile::permissions(path("target")) & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(AtomicFileTest, RefusesWhatIsNoTextOfReasonableSize)
{
    ASSERT_TRUE(AtomicFile::write(path("latin1"), "caf\xE9"));
    ASSERT_TRUE(AtomicFile::write(path("cut"), "\xF0\x9F\x98"));
    ASSERT_TRUE(AtomicFile::write(path("five"), "12345"));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    for (const char *name : {"latin1", "cut", "missing", "pipe", "."}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(AtomicFile::readText(path(name)));
    }
    EXPECT_EQ(AtomicFile::readText(path("five"), 5), u"12345"_s);
    EXPECT_FALSE(AtomicFile::readText(path("five"), 4));
}
