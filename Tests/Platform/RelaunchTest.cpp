#include "Platform/Relaunch.h"
#include "Platform/Home.h"
#include "Platform/ShellWords.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <csignal>

#include <gtest/gtest.h>

namespace
{
/// What a spawned shell has left in the file, once it is all there: the shell renames it into place.
QStringList linesFrom(const TemporaryHome &home, const QString &script)
{
    const QString file = home.path(QStringLiteral("answer"));
    const QString target = shellWord(file);
    EXPECT_EQ(Relaunch::spawnShell(QStringLiteral("{ %1; } > %2.part; mv %2.part %2").arg(script, target)),
              std::nullopt);
    const QDeadlineTimer deadline(30'000);
    while (!QFile::exists(file) && !deadline.hasExpired())
        QThread::msleep(2);
    return QString::fromUtf8(home.read(file)).split(u'\n', Qt::SkipEmptyParts);
}
} // namespace

TEST(ShellWords, AShellReadsBackTheText)
{
    for (const char *text :
         {"/opt/monitor", "", " two  blanks ", "it's", "''", "a\"b\"c", "$HOME `id` $(id) ${x}", "line\nbreak",
          "end\\", "\\n", "*?[a]~", "-n", "; rm -rf x & | <>", "日本語 é"}) {
        SCOPED_TRACE(text);
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
                    {QStringLiteral("-c"), QStringLiteral("printf %s ") + shellWord(QString::fromUtf8(text))});
        ASSERT_TRUE(shell.waitForFinished());
        EXPECT_EQ(shell.readAllStandardOutput().toStdString(), text);
    }
    EXPECT_EQ(shellWord(QStringLiteral("it's")), QStringLiteral(R"('it'\''s')"));
    EXPECT_EQ(shellWord(QStringLiteral("a") + QChar(u'\0') + u'b'), QStringLiteral("'ab'"));
}

TEST(Relaunch, CommandWaitsAndBecomesTheProgram)
{
    const struct {
        const char *name;
        QString executable, command;
    } rows[] = {
        {"plain", QStringLiteral("/opt/bin/monitor"), QStringLiteral("sleep 1; exec '/opt/bin/monitor'")},
        {"quote", QStringLiteral("/opt/it's/m"), QStringLiteral(R"(sleep 1; exec '/opt/it'\''s/m')")},
        {"blank and dollar", QStringLiteral("/o p/$x"), QStringLiteral("sleep 1; exec '/o p/$x'")},
        {"newline", QStringLiteral("/o\np"), QStringLiteral("sleep 1; exec '/o\np'")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Relaunch::command(row.executable), row.command);
    }
}

TEST(Relaunch, ShellHasTheEnvironmentAndNoStreamsOfOurs)
{
    const TemporaryHome home;
    std::signal(SIGPIPE, SIG_IGN);
    const QStringList lines =
        linesFrom(home, QStringLiteral("echo \"$HOME\"; readlink /proc/$$/fd/0 /proc/$$/fd/2; "
                                       "sed -n 's/^SigIgn:\t//p' /proc/$$/status"));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], homeDirectory());
    EXPECT_EQ(lines[1], QStringLiteral("/dev/null"));
    EXPECT_EQ(lines[2], QStringLiteral("/dev/null"));
    EXPECT_EQ(lines[3].toULongLong(nullptr, 16) >> (SIGPIPE - 1) & 1, 0U);
}

TEST(Relaunch, FailureIsTheSystemsText)
{
    EXPECT_EQ(Relaunch::spawnShell(QString(400'000, u'x')), QStringLiteral("Argument list too long"));
}
