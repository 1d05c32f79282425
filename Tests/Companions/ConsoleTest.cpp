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
              "SchedulerStatusInfoPath", "ApplicationStatusPath", "SyncStateFilePath"})
            table.insert(QString::fromLatin1(key), QString(QStringLiteral("~/") + QString::fromLatin1(key)));
        for (const char *key :
             {"LoginDetailsFilePath", "UserDetailsPath", "UserInfoPath", "AccountTypeFilePath",
              "AccountPlanFilePath", "TqlUserDetails", "BandwidthThrottleFilePathForTql"})
            table.insert(QString::fromLatin1(key), QString(QStringLiteral("~/%@/") + QString::fromLatin1(key)));
        table.insert(QStringLiteral("RemoteManageInfoPath"), QStringLiteral("%@/remote"));
        ASSERT_TRUE(writePropertyList(own + QStringLiteral("/table.plist"), table));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), own);
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           QStringLiteral("unix:path=/nonexistent"));
        m_console.setProcessEnvironment(environment);
        m_console.setProcessChannelMode(QProcess::MergedChannels);
    }
    void start(const QByteArray &script)
    {
        ASSERT_TRUE(writeWholeFile(m_home.filePath(QStringLiteral("script")), script));
        m_console.start(QStringLiteral(CORVANE_CONSOLE),
                        {QStringLiteral("--table"), m_home.filePath(QStringLiteral("table.plist")),
                         QStringLiteral("--monitor"), QStringLiteral("/nonexistent/monitor"),
                         QStringLiteral("--script"), m_home.filePath(QStringLiteral("script"))});
        ASSERT_TRUE(m_console.waitForStarted());
    }
    /// The exit status; -1 when the console does not end.
    [[nodiscard]] int run(const QByteArray &script)
    {
        start(script);
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
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        m_output.clear();
        EXPECT_EQ(run(row.script), 1);
        EXPECT_TRUE(m_output.contains(QString::fromLatin1(row.says))) << m_output.toStdString();
        EXPECT_FALSE(m_output.contains(QStringLiteral("> wait")));
    }
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
