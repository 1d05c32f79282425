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

using namespace Qt::StringLiterals;
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
        m_process.start(u"flock"_s, {u"--close"_s, file, u"sh"_s, u"-c"_s, u"echo held; read end"_s});
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
    const QString file = SingleInstance::lockFile(home.path(u"deep/product/"_s));
    EXPECT_EQ(file, home.path(u"deep/product/.monitor-%1.lock"_s.arg(getuid())));
    SingleInstance first(file);
    EXPECT_EQ(first.claim(0ms), Answer::Only);
    EXPECT_EQ(first.claim(0ms), Answer::Only) << "asking again is no second monitor";
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Taken);
    EXPECT_EQ(SingleInstance(home.path(u"other/lock"_s)).claim(0ms), Answer::Only);
}

TEST(SingleInstance, ClaimGoesWithTheProcessHoweverItEnds)
{
    const TemporaryHome home;
    const QString file = home.path(u"lock"_s);
    Holder killed(file);
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Taken);
    killed.kill();
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Only);
}

TEST(SingleInstance, WaitsForTheOneThatEnds)
{
    const TemporaryHome home;
    const QString file = home.path(u"lock"_s);
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
    const QString file = home.path(u"lock"_s);
    QProcess child;
    {
        SingleInstance first(file);
        ASSERT_EQ(first.claim(0ms), Answer::Only);
        child.start(u"cat"_s, {});
        ASSERT_TRUE(child.waitForStarted());
    }
    EXPECT_EQ(SingleInstance(file).claim(0ms), Answer::Only);
    child.closeWriteChannel();
    EXPECT_TRUE(child.waitForFinished());
}

TEST(SingleInstance, WithoutAPlaceForTheFileTheMonitorIsUnguarded)
{
    const TemporaryHome home;
    home.write(u"file"_s, "no folder");
    QDir().mkpath(home.path(u"folder/lock"_s));
    ASSERT_TRUE(QFile::link(home.path(u"elsewhere"_s), home.path(u"link"_s)));
    for (const char *path : {"file/lock", "folder/lock", "link"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(SingleInstance(home.path(QString::fromUtf8(path))).claim(0ms), Answer::Unguarded);
    }
    EXPECT_FALSE(QFile::exists(home.path(u"elsewhere"_s)));
}
