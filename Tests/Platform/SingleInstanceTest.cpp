#include "Platform/SingleInstance.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <chrono>
#include <thread>

#include <unistd.h>

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using Answer = SingleInstance::Answer;

namespace
{
/// Another process with the claim, until it is told to end or is killed.
class Holder
{
public:
    explicit Holder(const QString &file)
    {
        m_process.start(QStringLiteral("flock"), {QStringLiteral("--close"), file, QStringLiteral("sh"),
                                                  QStringLiteral("-c"), QStringLiteral("echo held; read end")});
        EXPECT_TRUE(m_process.waitForReadyRead());
        EXPECT_EQ(m_process.readAll(), "held\n");
    }
    ~Holder() { end(); }
    void end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};
} // namespace

TEST(SingleInstance, FirstStartMakesTheFolderAndHoldsTheClaim)
{
    const TemporaryHome home;
    const QString file = SingleInstance::lockFile(home.path(QStringLiteral("deep/product/")));
    EXPECT_EQ(file, home.path(QStringLiteral("deep/product/.monitor-%1.lock").arg(getuid())));
    SingleInstance first(file);
    EXPECT_EQ(first.claim(0ms), Answer::Only);
    EXPECT_EQ(first.claim(0ms), Answer::Only) << "asking again is no second monitor";
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Taken);
    EXPECT_EQ(SingleInstance(home.path(QStringLiteral("other/lock"))).claim(0ms), Answer::Only);
}

TEST(SingleInstance, ClaimGoesWithTheProcessHoweverItEnds)
{
    const TemporaryHome home;
    const QString file = home.path(QStringLiteral("lock"));
    Holder killed(file);
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Taken);
    killed.kill();
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Only);
}

TEST(SingleInstance, WaitsForTheOneThatEnds)
{
    const TemporaryHome home;
    const QString file = home.path(QStringLiteral("lock"));
    Holder predecessor(file);
    Answer answer = Answer::Taken;
    std::thread successor([&] { answer = SingleInstance(file).claim(60s); });
    predecessor.end();
    successor.join();
    EXPECT_EQ(answer, Answer::Only);
}

TEST(SingleInstance, ProgramsStartedFromHereDontKeepIt)
{
    const TemporaryHome home;
    const QString file = home.path(QStringLiteral("lock"));
    QProcess child;
    {
        SingleInstance first(file);
        ASSERT_EQ(first.claim(0ms), Answer::Only);
        child.start(QStringLiteral("cat"), {});
        ASSERT_TRUE(child.waitForStarted());
    }
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Only);
    child.closeWriteChannel();
    EXPECT_TRUE(child.waitForFinished());
}

TEST(SingleInstance, WithoutAPlaceForTheFileTheMonitorIsUnguarded)
{
    const TemporaryHome home;
    home.write(QStringLiteral("file"), "no folder");
    QDir().mkpath(home.path(QStringLiteral("folder/lock")));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("elsewhere")), home.path(QStringLiteral("link"))));
    for (const char *path : {"file/lock", "folder/lock", "link"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(SingleInstance(home.path(QString::fromUtf8(path))).claim(0ms), Answer::Unguarded);
    }
    EXPECT_FALSE(QFile::exists(home.path(QStringLiteral("elsewhere"))));
}
