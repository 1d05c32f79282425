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
    for (const char *text :
         {"/opt/monitor", "", " two  blanks ", "it's", "''", "a\"b\"c", "$HOME `id` $(id) ${x}", "line\nbreak",
          "end\\", "\\n", "*?[a]~", "-n", "; rm -rf x & | <>", "日本語 é"}) {
        SCOPED_TRACE(text);
        QProcess shell;
        shell.start(u"/bin/sh"_s, {u"-c"_s, u"printf %s "_s + shellWord(QString::fromUtf8(text))});
        ASSERT_TRUE(shell.waitForFinished());
        EXPECT_EQ(shell.readAllStandardOutput().toStdString(), text);
    }
    EXPECT_EQ(shellWord(u"it's"_s), uR"('it'\''s')"_s);
    EXPECT_EQ(shellWord(u"a"_s + QChar(u'\0') + u'b'), u"'ab'"_s);
}

TEST(Relaunch, CommandWaitsAndBecomesTheProgram)
{
    EXPECT_EQ(Relaunch::command(u"/opt/bin/monitor"_s), u"sleep 1; exec '/opt/bin/monitor'"_s);
    EXPECT_EQ(Relaunch::command(u"/opt/it's $x/m"_s), uR"(sleep 1; exec '/opt/it'\''s $x/m')"_s);
    EXPECT_EQ(Relaunch::spawnShell(QString(400'000, u'x')), u"Argument list too long"_s);
}

TEST(Relaunch, ShellHasTheEnvironmentAndNoStreamsOfOurs)
{
    const TemporaryHome home;
    std::signal(SIGPIPE, SIG_IGN);
    const QStringList lines = linesFrom(home, u"echo \"$HOME\"; readlink /proc/$$/fd/0 /proc/$$/fd/2; "
                                              u"sed -n 's/^SigIgn:\t//p' /proc/$$/status"_s);
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], homeDirectory());
    EXPECT_EQ(lines[1], u"/dev/null"_s);
    EXPECT_EQ(lines[2], u"/dev/null"_s);
    EXPECT_EQ(lines[3].toULongLong(nullptr, 16) >> (SIGPIPE - 1) & 1, 0U);
}
