#include "Companions/BackupDaemon/BackupDaemon.h"
#include "Companions/BackupDaemon/FrameCodec.h"
#include "Companions/Common/PropertyList.h"
#include "Companions/MainApplication/AccountFiles.h"
#include "Companions/MainApplication/ScheduleBook.h"
#include "Tests/Companions/TemporaryHome.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QTcpSocket>

#include <gtest/gtest.h>

namespace
{
const QString Ana = QStringLiteral("ana@example.com");

/// A client that connects to the port of the port file, the way the monitor does.
class Client
{
public:
    void connectTo(const QString &portFile)
    {
        const int port = readPropertyList(portFile).toMap().value(QStringLiteral("port")).toInt();
        m_socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
    }
    void send(const char *json) { m_socket.write(framed(json)); }
    [[nodiscard]] bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }

    /// Waits for a message of this type whose text holds `part`; what comes before it is passed over.
    [[nodiscard]] bool receives(const QString &type, const QByteArray &part)
    {
        return waitUntil([&] {
            if (!m_reader.feed(m_socket.readAll()))
                return false;
            while (const auto payload = m_reader.takePayload()) {
                const QJsonDocument message = QJsonDocument::fromJson(*payload);
                if (message.object().value(u"type") == type && payload->contains(part))
                    return true;
            }
            return false;
        });
    }
    template<typename Condition>
    static bool waitUntil(Condition condition)
    {
        const QDeadlineTimer deadline(std::chrono::seconds(20));
        while (!condition()) {
            if (deadline.hasExpired())
                return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        }
        return true;
    }

private:
    QTcpSocket m_socket;
    FrameReader m_reader;
};

class DaemonChannelTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(AccountFiles(TemporaryHome::table()).signIn({.name = Ana}));
        const QDateTime later(QDate(2099, 1, 2), QTime(3, 4));
        writeSchedules(m_home.file(QStringLiteral("schedules.plist")),
                       {ScheduleBook::makeJob(Ana, loginName(), later, Frequency::Daily)});
        ASSERT_TRUE(m_daemon.start(0));
        m_client.connectTo(m_home.file(QStringLiteral("port.plist")));
        ASSERT_TRUE(Client::waitUntil([this] { return m_client.isConnected(); }));
        // The daemon has taken the connection once it answers.
        m_client.send(R"({"type":"FDAMessage","data":{"profileName":"ana"}})");
        ASSERT_TRUE(m_client.receives(QStringLiteral("FDAMessage"), R"("IsDaemonFullDiskAccess":"YES")"));
    }
    [[nodiscard]] QString text(const QString &name) const { return readTextFile(m_home.file(name)); }
    [[nodiscard]] int status() const
    {
        const auto jobs = readSchedules(m_home.file(QStringLiteral("schedules.plist")));
        return jobs.empty() ? -1 : jobs.front().value(QStringLiteral("status")).toInt();
    }

    TemporaryHome m_home;
    BackupDaemon m_daemon{TemporaryHome::table()};
    Client m_client;
};
} // namespace

TEST_F(DaemonChannelTest, JobIsPausedResumedAndStoppedByItsClient)
{
    const QString toolTip = QStringLiteral("SetToolTip");
    m_daemon.runCommand(QStringLiteral("job 3600"));
    EXPECT_EQ(status(), 1);
    EXPECT_TRUE(m_client.receives(QStringLiteral("operationProgress"), R"("progressType":0)"));
    EXPECT_TRUE(m_client.receives(toolTip, "Scheduled Backup is in progress."));

    m_client.send(R"({"type":"clientCoreOperation","data":{"actionType":1}})");
    m_client.send(R"({"type":"SetPauseState","data":""})");
    EXPECT_TRUE(m_client.receives(toolTip, "Your Scheduled job is paused."));
    EXPECT_EQ(text(QStringLiteral("status.txt")), QStringLiteral("2"));
    EXPECT_EQ(text(Ana + QStringLiteral("/throttle/pause.txt")), QStringLiteral("1"));

    m_client.send(R"({"type":"clientCoreOperation","data":{"actionType":2}})");
    EXPECT_TRUE(m_client.receives(toolTip, "Scheduled Backup is in progress."));
    EXPECT_EQ(text(QStringLiteral("status.txt")), QStringLiteral("1"));
    EXPECT_EQ(text(Ana + QStringLiteral("/throttle/pause.txt")), QStringLiteral("0"));

    m_client.send(R"({"type":"clientCoreOperation","data":{"actionType":3}})");
    EXPECT_TRUE(m_client.receives(QStringLiteral("operationProgress"), R"("progressType":6)"));
    // There is no session bus here, so the line comes over the channel.
    EXPECT_TRUE(m_client.receives(toolTip, "Your next scheduled job will start on 01-02-2099 03:04"));
    EXPECT_EQ(status(), 2);
}

TEST_F(DaemonChannelTest, JobRunsToItsEnd)
{
    m_daemon.runCommand(QStringLiteral("prepare 0"));
    m_daemon.runCommand(QStringLiteral("pace 50"));
    m_daemon.runCommand(QStringLiteral("job 1"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("operationProgress"), R"("progressType":0)"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("operationProgress"), R"("progressType":2)"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("operationProgress"), R"("percentage":"100")"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("operationProgress"), R"("progressType":6)"));
    EXPECT_EQ(status(), 3);
}

TEST_F(DaemonChannelTest, PaceFollowsTheStoredBandwidth)
{
    const QString progress = QStringLiteral("operationProgress");
    const auto store = [this](const char *percent) {
        const QVariantMap settings{{QStringLiteral("BandwidthThrottleKey"), QString::fromLatin1(percent)}};
        writePropertyList(m_home.file(QStringLiteral("preferences.plist")), {{Ana, settings}});
    };
    store("50");
    m_daemon.runCommand(QStringLiteral("prepare 0"));
    m_daemon.runCommand(QStringLiteral("job 3600"));
    EXPECT_TRUE(m_client.receives(progress, R"("transferSpeed":"600 KB/s")"));
    store("25");
    m_client.send(R"({"type":"bandwidthThrottleChanged","data":{"userName":"ana@example.com"}})");
    EXPECT_TRUE(m_client.receives(progress, R"("transferSpeed":"300 KB/s")"));
}

TEST_F(DaemonChannelTest, FiguresSayWhatTheyAreTold)
{
    const QString progress = QStringLiteral("operationProgress");
    m_daemon.runCommand(QStringLiteral("prepare 0"));
    m_daemon.runCommand(QStringLiteral("job 3600"));
    m_daemon.runCommand(QStringLiteral("percent 4x"));
    EXPECT_TRUE(m_client.receives(progress, R"("percentage":"4x")"));
    m_daemon.runCommand(QStringLiteral("file /tmp/a  b"));
    EXPECT_TRUE(m_client.receives(progress, R"("filename":"/tmp/a  b")"));
    m_daemon.runCommand(QStringLiteral("file 10MB"));
    EXPECT_TRUE(m_client.receives(progress, QByteArray(9'999'990, 'x')));
    m_daemon.runCommand(QStringLiteral("file"));
    EXPECT_TRUE(m_client.receives(progress, R"("filename":"/home/ana/Documents)"));
    m_daemon.runCommand(QStringLiteral("retry"));
    EXPECT_TRUE(m_client.receives(progress, R"("progressType":3)"));
    m_daemon.runCommand(QStringLiteral("legacy Retry"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("Progress"), R"("State":"Retry")"));
}

TEST_F(DaemonChannelTest, NothingComesBetweenTheBytesOfASlowFrame)
{
    m_daemon.runCommand(QStringLiteral("slow one at a time"));
    m_daemon.runCommand(QStringLiteral("tooltip behind it"));
    m_daemon.runCommand(QStringLiteral("slow and once more"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("SetToolTip"), "one at a time"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("SetToolTip"), "behind it"));
}

TEST_F(DaemonChannelTest, ClientThatAnnouncesTooMuchIsDroppedAndTheNextIsServed)
{
    const QByteArray announcement = frameHeader(quint64(1) << 40);
    QTcpSocket hostile;
    const int port = readPropertyList(m_home.file(QStringLiteral("port.plist")))
                         .toMap()
                         .value(QStringLiteral("port"))
                         .toInt();
    hostile.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
    hostile.write(announcement);
    EXPECT_TRUE(Client::waitUntil([&] { return hostile.state() == QAbstractSocket::UnconnectedState; }));
    m_daemon.runCommand(QStringLiteral("tooltip still here"));
    EXPECT_TRUE(m_client.receives(QStringLiteral("SetToolTip"), "still here"));
}

TEST_F(DaemonChannelTest, RefusedCommandsChangeNothing)
{
    for (const char *line : {"job nobody@example.com", "job 0", "job local", "job restore", "pause", "resume",
                             "stop", "retry", "file x", "percent 1", "legacy Start", "pace 0", "pace 51",
                             "prepare -1", "reports maybe", "burst 5", "send [1]"}) {
        SCOPED_TRACE(line);
        m_daemon.runCommand(QString::fromLatin1(line));
        EXPECT_EQ(status(), 0);
        EXPECT_EQ(text(QStringLiteral("status.txt")), QStringLiteral("1"));
    }
}
