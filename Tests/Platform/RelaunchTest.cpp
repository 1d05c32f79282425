#include "Platform/Relaunch.h"
#include "Platform/Home.h"
#include "Platform/ShellWords.h"
#include "Platform/Umask.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
/// What a spawned shell has left in the file, once it is all there: the shell renames it into place.
QStringList linesFrom(const TemporaryHome &home, const QString &script)
{
    const QString file = home.path(u"answer"_s);
    const QString target = shellWord(file);
    EXPECT_EQ(Relaunch::spawnShell(u"{ %1; } > %2.part; mv %2.part %2"_s.arg(script, target)), std::nullopt);
    const QDeadlineTimer deadline(30'000);
    while (!QFile::exists(file) && !deadline.hasExpired())
        QThread::msleep(2);
    return QString::fromUtf8(home.read(file)).split(u'\n', Qt::SkipEmptyParts);
}
} // namespace

TEST(ShellWords, AShellReadsBackTheText)
{
    for (const char *text : {"/opt/monitor", "", " two  blanks ", "it's", "a\"b\"c", "$HOME `id` $(id) ${x}",
                             "line\nbreak", "end\\", "*?[a]~", "-n", "; rm -rf x & | <>", "日本語 é"}) {
        QProcess shell;
        shell.start(u"/bin/sh"_s, {u"-c"_s, u"printf %s "_s + shellWord(QString::fromUtf8(text))});
        ASSERT_TRUE(shell.waitForFinished());
        EXPECT_EQ(shell.readAllStandardOutput().toStdString(), text);
    }
    EXPECT_EQ(shellWord(u"a"_s + QChar(u'\0') + u'b'), u"'ab'"_s);
}

TEST(Relaunch, ShellHasTheSessionsMaskAndEnvironmentAndNoStreamsOfOurs)
{
    const TemporaryHome home;
    const mode_t session = umask(027);
    Umask::keepPrivate();
    EXPECT_EQ(umask(077), 077U);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    const QStringList lines = linesFrom(home, u"umask; echo \"$HOME\"; readlink /proc/$$/fd/0 /proc/$$/fd/2; "
                                              u"sed -n 's/^SigIgn:\t//p' /proc/$$/status"_s);
    std::signal(SIGXFSZ, SIG_DFL);
    umask(session);
    Umask::keepPrivate();
    umask(session);
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines.first(4), (QStringList{u"0027"_s, homeDirectory(), u"/dev/null"_s, u"/dev/null"_s}));
    const qulonglong ignored = lines[4].toULongLong(nullptr, 16);
    EXPECT_EQ(ignored & (1ULL << (SIGPIPE - 1) | 1ULL << (SIGXFSZ - 1)), 0U);
    EXPECT_EQ(Relaunch::spawnShell(QString(400'000, u'x')), u"Argument list too long"_s);
}

TEST(Relaunch, WaitsForTheEndOfTheOneThatStartedIt)
{
    const TemporaryHome home;
    const QString came = home.path(u"came"_s);
    int hold[2];
    ASSERT_EQ(pipe2(hold, O_CLOEXEC), 0);
    const pid_t parent = fork();
    if (parent == 0) {
        const bool started = !Relaunch::spawnShell(u"read -r _ <&3; : > "_s + shellWord(came));
        char end = 0;
        close(hold[1]);
        _exit(read(hold[0], &end, 1) == 0 && started ? 0 : 1);
    }
    QThread::msleep(200);
    EXPECT_FALSE(QFile::exists(came)) << "the parent is still there";
    close(hold[1]);
    int status = -1;
    ASSERT_EQ(waitpid(parent, &status, 0), parent);
    EXPECT_EQ(status, 0);
    const QDeadlineTimer deadline(30'000);
    while (!QFile::exists(came) && !deadline.hasExpired())
        QThread::msleep(2);
    EXPECT_TRUE(QFile::exists(came));
    close(hold[0]);
}
