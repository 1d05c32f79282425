#include "Platform/CommandQueue.h"
#include "Platform/ShellWords.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QFile>

#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
class CommandQueueTest : public testing::Test
{
protected:
    [[nodiscard]] bool run(const QString &text)
    {
        return queue->run(u"cd "_s + shellWord(home.path({})) + u"; "_s + text);
    }
    [[nodiscard]] bool exists(const QString &name) { return QFile::exists(home.path(name)); }
    [[nodiscard]] bool waitForLines(const QString &name, qsizetype count)
    {
        return waitUntil([&] { return home.read(name).count('\n') == count; });
    }
    /// Children of this process, dead ones among them.
    static QByteArray children()
    {
        QFile file(u"/proc/self/task/%1/children"_s.arg(::gettid()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("?");
    }

    /// What ends after its queue is left to this process.
    void TearDown() override
    {
        queue.reset();
        EXPECT_TRUE(waitUntil([] { return ::waitpid(-1, nullptr, WNOHANG) < 0; }));
    }

    TemporaryHome home;
    ManualClock clock{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};
    std::unique_ptr<CommandQueue> queue = std::make_unique<CommandQueue>(clock);
};
} // namespace

TEST_F(CommandQueueTest, OneAtATimeInOrderWithAShortQueue)
{
    int taken = 0;
    for (int i = 0; i < 150; ++i)
        taken += run(u"until test -e go; do sleep 0.01; done; echo begin >>log; sleep 0.01; echo end >>log"_s);
    EXPECT_EQ(taken, 9) << "one runs, eight wait";
    home.write(u"go"_s, "");
    ASSERT_TRUE(waitForLines(u"log"_s, 18));
    EXPECT_EQ(home.read(u"log"_s), QByteArray("begin\nend\n").repeated(9));
    EXPECT_TRUE(waitUntil([] { return children().isEmpty(); })) << "a zombie stays";
    EXPECT_TRUE(run(u"echo end >>log"_s)) << "there is room again";
}

TEST_F(CommandQueueTest, ACommandThatStaysHoldsUpTheNextForAWhileOnly)
{
    ASSERT_TRUE(run(u"touch first; until test -e go; do sleep 0.01; done; touch last"_s));
    ASSERT_TRUE(run(u"echo x >>log"_s));
    ASSERT_TRUE(run(u"echo x >>log"_s));
    EXPECT_TRUE(waitUntil([&] { return exists(u"first"_s); }));
    clock.advance(9999ms);
    EXPECT_FALSE(exists(u"log"_s));
    clock.advance(1ms);
    EXPECT_TRUE(waitForLines(u"log"_s, 2)) << "the others take turns as ever";
    // It outlives whoever had it run.
    queue.reset();
    home.write(u"go"_s, "");
    EXPECT_TRUE(waitUntil([&] { return exists(u"last"_s); }));
}

TEST_F(CommandQueueTest, ThoseThatStayAreBounded)
{
    int taken = 0;
    for (int i = 0; i < 40; ++i) {
        taken += run(u"echo x >>log; until test -e go; do sleep 0.05; done; echo y >>log"_s);
        clock.advance(10s);
    }
    EXPECT_EQ(taken, 32);
    EXPECT_TRUE(waitForLines(u"log"_s, 32));
    home.write(u"go"_s, "");
    EXPECT_TRUE(waitForLines(u"log"_s, 64));
    EXPECT_TRUE(waitUntil([] { return children().isEmpty(); }));
}

TEST_F(CommandQueueTest, ACommandHasNothingOfOurs)
{
    std::signal(SIGUSR1, SIG_IGN);
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const int inherited = ::open("/dev/zero", O_RDONLY); // not closed on exec
    // What stands in brackets is another process, whose streams are the test's; $$ is the shell itself.
    ASSERT_TRUE(run(u"( ls /proc/$$/fd | xargs; readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2; "
                    "sed -n 's/^Sig\\(Blk\\|Ign\\):\\t//p' /proc/$$/status; "
                    "test $(ps -o sid= -p $$) = $$ && echo own ) >part; mv part answer"_s));
    ASSERT_TRUE(waitUntil([&] { return exists(u"answer"_s); }));
    ::close(inherited);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGUSR1, SIG_DFL);
    EXPECT_EQ(home.read(u"answer"_s).replace('\n', '|').toStdString(),
              "0 1 2|/dev/null|/dev/null|/dev/null|0000000000000000|0000000000000000|own|");
}

TEST_F(CommandQueueTest, WhatCannotBeStartedIsRefused)
{
    EXPECT_FALSE(run(QString(400'000, u'x')));
    EXPECT_FALSE(run(u"touch cut"_s + QChar(u'\0') + u"off"_s));
    EXPECT_TRUE(run(QString()));
    EXPECT_TRUE(waitUntil([] { return children().isEmpty(); }));
    EXPECT_FALSE(exists(u"cut"_s));
}
