#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{
/// A console with its companions in a home of its own, run on a script.
class ConsoleTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString own = m_home.path();
        QVariantMap table;
        for (const char *key :
             {"TCPPortFile", "LastUserLoginDetailsFilePath", "SchedulerSettingsFile", "CurrentJobs",
              "SchedulerStatusInfoPath", "ApplicationStatusPath", "SyncStateFilePath", "DeamonPreferencePath"})
            table.insert(QString::fromLatin1(key), QString(QStringLiteral("~/") + QString::fromLatin1(key)));
        for (const char *key :
             {"LoginDetailsFilePath", "UserDetailsPath", "UserInfoPath", "AccountTypeFilePath",
              "AccountPlanFilePath", "TqlUserDetails", "BandwidthThrottleFilePathForTql"})
            table.insert(QString::fromLatin1(key), QString(QStringLiteral("~/%@/") + QString::fromLatin1(key)));
        table.insert(QStringLiteral("ApplicationFullName"), QStringLiteral("Corvane"));
        table.insert(QStringLiteral("RemoteManageInfoPath"), QStringLiteral("%@/remote"));
        ASSERT_TRUE(writePropertyList(own + QStringLiteral("/table.plist"), table));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), own);
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           QStringLiteral("unix:path=/nonexistent"));
        m_console.setProcessEnvironment(environment);
        m_console.setProcessChannelMode(QProcess::MergedChannels);
    }
    void start(const QByteArray &script, const QString &monitor = QStringLiteral("/nonexistent/monitor"))
    {
        ASSERT_TRUE(writeWholeFile(m_home.filePath(QStringLiteral("script")), script));
        m_console.start(QStringLiteral(CORVANE_CONSOLE),
                        {QStringLiteral("--table"), m_home.filePath(QStringLiteral("table.plist")),
                         QStringLiteral("--monitor"), monitor, QStringLiteral("--script"),
                         m_home.filePath(QStringLiteral("script"))});
        ASSERT_TRUE(m_console.waitForStarted());
    }
    /// The exit status; -1 when the console does not end.
    [[nodiscard]] int run(const QByteArray &script,
                          const QString &monitor = QStringLiteral("/nonexistent/monitor"))
    {
        start(script, monitor);
        if (!m_console.waitForFinished(30'000))
            return -1;
        m_output += QString::fromUtf8(m_console.readAll());
        return m_console.exitCode();
    }
    [[nodiscard]] bool printsSoon(const QString &text)
    {
        QElapsedTimer timer;
        timer.start();
        while (!m_output.contains(text) && timer.elapsed() < 20'000) {
            m_console.waitForReadyRead(100);
            m_output += QString::fromUtf8(m_console.readAll());
        }
        return m_output.contains(text);
    }

    QTemporaryDir m_home;
    QProcess m_console;
    QString m_output;
};

bool anyProcessUses(const QString &home)
{
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile environment(QStringLiteral("/proc/%1/environ").arg(entry));
        if (environment.open(QIODevice::ReadOnly) && environment.readAll().contains("HOME=" + home.toUtf8()))
            return true;
    }
    return false;
}
} // namespace

TEST_F(ConsoleTest, RunsAScriptAndLeavesNoProgramBehind)
{
    EXPECT_EQ(run("application start\nsign in ana@example.com\nschedule demo\n# a comment\n\ndaemon start\n"
                  "job 60\npause\nhelp\ndaemon crash\ndaemon start\nclients\ndaemon stop\n"),
              0)
        << m_output.toStdString();
    EXPECT_TRUE(m_output.contains(QStringLiteral("> clients\nok 0\n"))) << m_output.toStdString();
    EXPECT_FALSE(anyProcessUses(m_home.path()));
    // The second daemon has put right what the first one left.
    EXPECT_EQ(readTextFile(m_home.filePath(QStringLiteral("SchedulerStatusInfoPath"))), QStringLiteral("1"));
}

TEST_F(ConsoleTest, ScriptStopsAtTheFirstFailure)
{
    const struct {
        const char *name;
        const char *script;
        const char *says;
    } rows[] = {
        {"unknown command", "frobnicate\nwait 0\n", "error unknown command: frobnicate"},
        {"program not running", "pause\nwait 0\n", "error daemon is not running"},
        {"no such program", "monitor start\nwait 0\n", "error cannot start /nonexistent/monitor"},
        {"refused by a companion", "application start\nquota 1\nwait 0\n", "error needs a signed-in account"},
        {"no status item", "expect tooltip Corvane 0\nwait 0\n", "error there is no status item"},
        {"no menu", "expect menu Status 0\nwait 0\n", "error there is no menu"},
        {"no menu, so nothing is missing in it", "expect no menu Status 0\nwait 0\n", "error there is no menu"},
        {"nothing known to expect", "expect rain\nwait 0\n", "error what should be expected?"},
        {"file not in the table", "expect file Nowhere x 0\nwait 0\n", "error the path table has no such file"},
        {"application not in front", "application away\nwait 0\n", "error the application is not in front"},
        {"no monitor to signal", "monitor signal TERM\nwait 0\n", "error monitor is not running"},
        {"no window", "expect window 0\nwait 0\n", "error the windows are: none"},
        {"no window to picture", "picture window x\nwait 0\n", "error the monitor shows no window"},
        {"no key", "key --clearmodifiers\nwait 0\n", "error needs names of keys"},
        {"no daemon to ask", "expect job none 0\nwait 0\n", "error daemon is not running"},
        {"another state", "daemon start\nexpect job paused 0\nwait 0\n", "error the job is: none"},
        {"what the daemon has not said", "daemon start\nexpect daemon hello 0\nwait 0\n",
         "error since the last one it has said:"},
        {"no monitor to be second to", "monitor again\nwait 0\n", "error monitor is not running"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        m_output.clear();
        EXPECT_EQ(run(row.script), 1);
        EXPECT_TRUE(m_output.contains(QString::fromLatin1(row.says))) << m_output.toStdString();
        EXPECT_FALSE(m_output.contains(QStringLiteral("> wait")));
    }
}

TEST_F(ConsoleTest, AsksForTheDaemonsLinesAndStateInTheirOrder)
{
    EXPECT_EQ(
        run("application start\nsign in ana@example.com\nschedule demo\ndaemon start\nexpect job none\n"
            "prepare 600\njob 60\nexpect job preparing\nexpect daemon bandwidth now 75 %\npause\n"
            "expect job paused\nresume\nprepare 0\nexpect job running\nexpect no daemon job stopped\nstop\n"
            "expect job none\nclients\nexpect daemon job stopped\nexpect no daemon bandwidth\n"),
        0)
        << m_output.toStdString();
    // Each answer went to the command that asked for it.
    EXPECT_TRUE(m_output.contains(QStringLiteral("> clients\nok 0\n"))) << m_output.toStdString();
}

TEST_F(ConsoleTest, TellsHowTheMonitorEnded)
{
    const struct {
        const char *name, *monitor, *script;
        int status;
        const char *says;
    } rows[] = {
        {"well", "/bin/true", "monitor start\nexpect monitor ended 20\n", 0, "> expect monitor ended 20\nok"},
        {"badly", "/bin/false", "monitor start\nexpect monitor ended 2\n", 1, "error the monitor ended with 1"},
        {"by a signal", "/bin/cat", "monitor start\nmonitor signal TERM\nexpect monitor ended 2\n", 1,
         "error the monitor ended with no exit status"},
        {"not at all", "/bin/cat", "monitor start\nexpect monitor ended 0\n", 1,
         "error the monitor is running"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        m_output.clear();
        EXPECT_EQ(run(row.script, QString::fromLatin1(row.monitor)), row.status);
        EXPECT_TRUE(m_output.contains(QString::fromLatin1(row.says))) << m_output.toStdString();
        EXPECT_FALSE(anyProcessUses(m_home.path()));
    }
}

TEST_F(ConsoleTest, ApplicationInFrontIsSeenToRunUntilItGoes)
{
    EXPECT_EQ(run("application front\nexpect application\napplication away\napplication front\n"), 0)
        << m_output.toStdString();
    EXPECT_FALSE(anyProcessUses(m_home.path()));
}

TEST_F(ConsoleTest, TerminationEndsItsProgramsToo)
{
    start("application start\ndaemon start\nwait 600\n");
    ASSERT_TRUE(printsSoon(QStringLiteral("> wait 600")));
    EXPECT_TRUE(anyProcessUses(m_home.path()));
    m_console.terminate();
    ASSERT_TRUE(m_console.waitForFinished(30'000));
    EXPECT_EQ(m_console.exitCode(), 130);
    EXPECT_FALSE(anyProcessUses(m_home.path()));
}
