// The console on scripts of its own: a tale must fail where what it expects does not come, and leave nothing
// behind.

#include "Tests/Support/ForEachRow.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
class ConsoleTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, m_home.path());
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
        m_console.setProcessEnvironment(environment);
        m_console.setProcessChannelMode(QProcess::MergedChannels);
    }
    void start(const QByteArray &script, const char *monitor = "/nonexistent/monitor")
    {
        m_output.clear();
        QFile file(m_home.filePath(u"script"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(script) == script.size());
        file.close();
        m_console.start(QStringLiteral(CORVANE_CONSOLE),
                        {u"--monitor"_s, QString::fromLatin1(monitor), u"--script"_s, file.fileName()});
    }
    /// The exit status; -1 when the console does not end. Nothing of its home runs then.
    [[nodiscard]] int ends()
    {
        if (!m_console.waitForFinished(30'000))
            return -1;
        m_output += m_console.readAll();
        EXPECT_FALSE(anyProcessRuns());
        return m_console.exitCode();
    }
    [[nodiscard]] bool anyProcessRuns() const
    {
        for (const QString &entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
            QFile environment(u"/proc/%1/environ"_s.arg(entry));
            if (environment.open(QIODevice::ReadOnly) &&
                environment.readAll().contains("HOME=" + m_home.path().toUtf8()))
                return true;
        }
        return false;
    }

    QTemporaryDir m_home;
    QProcess m_console;
    QByteArray m_output;
};
} // namespace

TEST_F(ConsoleTest, ATaleStopsAtItsFirstFailure)
{
    const char *const none = "/nonexistent/monitor";
    const struct {
        const char *name, *script, *says, *monitor;
    } rows[] = {
        {"unknown command", "frobnicate\n", "unknown command: frobnicate", none},
        {"program not running", "pause\n", "daemon is not running", none},
        {"no such program", "monitor start\n", "cannot start /nonexistent/monitor", none},
        {"refused by the application", "application start\nquota 1\n", "needs a signed-in account", none},
        {"refused by the daemon", "daemon start\njob\n", "nobody is signed in", none},
        {"no status item", "expect tooltip Corvane 0\n", "there is no status item", none},
        {"no menu", "expect menu Status 0\n", "there is no menu", none},
        {"no menu, so nothing is missing in it", "expect no menu Status 0\n", "there is no menu", none},
        {"nothing known to expect", "expect rain\n", "what should be expected?", none},
        {"file not in the table", "expect file Nowhere x 0\n", "the path table has no such file", none},
        {"application not in front", "application away\n", "the application is not in front", none},
        {"no window", "expect window 0\n", "the windows are: none", none},
        {"another state", "daemon start\nexpect job paused 0\n", "the job is: none", none},
        {"what the daemon has not said", "daemon start\nexpect daemon hello 0\n", "it has said:", none},
        {"no list of logs", "expect logs 0 0\n", "there is no list of logs", none},
        {"no list, so nothing is missing in it", "expect no log x 0\n", "there is no list of logs", none},
        {"no number of logs", "expect logs many\n", "needs a number of logs", none},
        {"a log of no size", "daemon start\nlog big 17G\n", "needs a size", none},
        {"half an order of the web", "daemon start\nweb delete 11-20-2026-10-00-00\n", "needs the name", none},
        {"a bad end", "monitor start\nexpect monitor ended 2\n", "the monitor ended with 1", "/bin/false"},
        {"no end", "monitor start\nexpect monitor ended 0\n", "the monitor is running", "/bin/cat"},
        {"an end by a signal", "monitor start\nmonitor signal TERM\nexpect monitor ended 2\n",
         "the monitor ended with no exit status", "/bin/cat"},
    };
    forEachRow(rows, [this](const auto &row) {
        start(QByteArray(row.script) + "wait 0\n", row.monitor);
        EXPECT_EQ(ends(), 1);
        EXPECT_TRUE(m_output.contains(row.says)) << m_output.constData();
        EXPECT_TRUE(m_output.contains("\nerror ")) << m_output.constData();
        EXPECT_FALSE(m_output.contains("> wait"));
    });
}

TEST_F(ConsoleTest, ATaleThatHoldsEndsWell)
{
    const struct {
        const char *name, *script;
    } rows[] = {
        {"a good end of the monitor", "monitor start\nexpect monitor ended 20\n"},
        {"what the daemon says and does, each answer to its own command",
         "application start\nsign in ana@example.com\nschedule demo\n# a comment\n\ndaemon start\n"
         "expect job none\nprepare 600\njob 60\nexpect job preparing\nexpect daemon bandwidth now 75 %\npause\n"
         "expect job paused\nresume\nprepare 0\nexpect job running\nexpect no daemon job stopped\nstop\n"
         "expect job none\nexpect daemon job stopped\nexpect no daemon bandwidth\n"},
        {"a job that ends by itself",
         "application start\nsign in ana@example.com\nschedule demo\ndaemon start\n"
         "prepare 0\njob 1\nexpect daemon job completed\nexpect job none\n"},
        {"the state of a daemon that died",
         "application start\nsign in ana@example.com\nschedule demo\n"
         "daemon start\njob 60\npause\nexpect file SchedulerStatusInfoPath \"2\"\n"
         "daemon crash\ndaemon start\nexpect job none\n"
         "expect file SchedulerStatusInfoPath \"1\"\n"},
        {"logs of every kind",
         "application start\nsign in ana@example.com\nschedule demo\ndaemon start\nhistory week\n"
         "history hostile\nlog language ja\nlog links on\nlog success\nlog failure bo\nlog progress\nlog cdp\n"
         "log sync\nlog big 2G\nold logs 60\nold archive on\nold layout\nold archive off\n"
         "prepare 0\njob 60\nfail\nexpect daemon job failed\nhistory victims\nhistory none\nflag viewLogs\n"},
        {"the application in front",
         "application front\nexpect application\napplication away\napplication front\n"},
    };
    forEachRow(rows, [this](const auto &row) {
        start(QByteArray(row.script) + "help\n", "/bin/true");
        EXPECT_EQ(ends(), 0) << m_output.constData();
    });
}

TEST_F(ConsoleTest, TerminationEndsItsProgramsToo)
{
    start("application start\ndaemon start\nwait 600\n");
    ASSERT_TRUE(waitUntil([this] { return (m_output += m_console.readAll()).contains("> wait 600"); }));
    EXPECT_TRUE(anyProcessRuns());
    m_console.terminate();
    EXPECT_EQ(ends(), 130);
}
