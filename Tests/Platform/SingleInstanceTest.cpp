#include "Platform/SingleInstance.h"
#include "Tests/Support/ChildProgram.h"
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
struct Holder : ChildProgram {
    explicit Holder(const QString &file)
    {
        EXPECT_TRUE(start(u"flock"_s, {u"--close"_s, file, u"sh"_s, u"-c"_s, u"echo held; read end"_s}));
        EXPECT_EQ(read(30'000), "held\n");
    }
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
    predecessor.finish();
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
    for (const QString &path : {home.path(u"file/lock"_s), home.path(u"folder/lock"_s), home.path(u"link"_s),
                                QString(u"relative-lock"_s)})
        EXPECT_EQ(SingleInstance(path).claim(0ms), Answer::Unguarded) << path.toStdString();
    EXPECT_FALSE(QFile::exists(home.path(u"elsewhere"_s)));
    EXPECT_FALSE(QFile::exists(u"relative-lock"_s));
}
