#include "Platform/StampedFile.h"

#include "Platform/AtomicFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
class FileMemoTest : public testing::Test
{
protected:
    std::shared_ptr<const QByteArray> read() { return m_memo.read(m_path); }
    void rewrite(const QByteArray &bytes) { ASSERT_TRUE(AtomicFile::write(m_path, bytes)); }
    /// Same inode, same size: only the times can tell.
    void overwrite(const QByteArray &bytes)
    {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.write(bytes);
    }

    QTemporaryDir m_home;
    QString m_path = m_home.filePath(u"file"_s);
    int m_decoded = 0;
    std::chrono::nanoseconds m_ahead = 10s; ///< how much later than now the reader believes it is
    FileMemo<QByteArray> m_memo{[this](const QString &path) {
                                    ++m_decoded;
                                    const auto bytes = AtomicFile::read(path, 1000);
                                    return bytes ? std::make_shared<const QByteArray>(*bytes) : nullptr;
                                },
                                [this] { return fileClockNow() + m_ahead; }};
};
} // namespace

TEST_F(FileMemoTest, SettledFileIsDecodedOnce)
{
    rewrite("one");
    EXPECT_EQ(*read(), "one");
    EXPECT_EQ(*read(), "one");
    EXPECT_EQ(m_decoded, 1);
    rewrite("two");
    EXPECT_EQ(*read(), "two");
    EXPECT_EQ(m_decoded, 2);
    rewrite(QByteArray(2000, 'x')); // of no use, and remembered too
    EXPECT_EQ(read(), nullptr);
    EXPECT_EQ(read(), nullptr);
    EXPECT_EQ(m_decoded, 3);
    m_ahead += 5s;
    EXPECT_EQ(read(), nullptr);
    EXPECT_EQ(m_decoded, 4) << "it may have been the reading that failed";
}

TEST_F(FileMemoTest, RewriteWithinOneTickIsSeen)
{
    m_ahead = 0s;
    rewrite("one");
    for (const char *content : {"two", "six", "ten", "one"}) {
        overwrite(content);
        EXPECT_EQ(*read(), content);
    }
    m_ahead = -10s; // a clock that was set back
    EXPECT_EQ(*read(), "one");
    EXPECT_EQ(*read(), "one");
    EXPECT_EQ(m_decoded, 6);
}

TEST_F(FileMemoTest, FileThatComesAndGoes)
{
    EXPECT_EQ(read(), nullptr);
    EXPECT_EQ(m_decoded, 0);
    for (int i = 0; i < 2; ++i) {
        rewrite("one");
        EXPECT_EQ(*read(), "one");
        ASSERT_TRUE(QFile::remove(m_path));
        EXPECT_EQ(read(), nullptr);
    }
}

TEST(FileStampTest, AgeThatMakesAStampTrustworthy)
{
    const std::tuple<std::chrono::nanoseconds, std::chrono::nanoseconds, std::chrono::nanoseconds, bool>
        rows[] = {
            {100s + 1ns, 100s + 1ns, 100s + 50ms, false}, // fresh
            {100s + 1ns, 100s + 1ns, 100s + 51ms, true},
            {5s, 100s + 1ns, 100s + 20ms, false}, // the modified time was set back
            {100s, 100s, 101s + 900ms, false},    // a file system of whole seconds
            {100s, 100s, 102s + 1ms, true},
            {100s + 1ns, 200s + 1ns, 150s, false}, // from the future
        };
    for (const auto &[modified, changed, now, isSettled] : rows) {
        FileStamp stamp;
        stamp.modified = modified;
        stamp.changed = changed;
        EXPECT_EQ(stamp.isSettled(now), isSettled) << now.count();
    }
}
