// How many 700-byte reports a second the daemon channel takes from the socket to a callback, beside what
// QTcpSocket and QJsonDocument do with the same frames, and beside a loop that only receives the bytes; and how
// many the whole monitor takes, whose rule decides on the tool tip for each. The sender is a process of its own
// on the loopback device; the reports differ as those of a real job do. Also the longest pause of the main
// event loop while a burst comes in.
#include "Benchmarks/RunningJob.h"
#include "Messaging/DaemonChannel.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/CVSingletonForBackup.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr int ReportsPerRun = 200000;
constexpr int BurstReports = 10000;
constexpr int Runs = 5;

/// The sender: sends the reports of one run, burst after burst, on each connection that comes, and then takes
/// what the other end has to say until it closes.
[[noreturn]] void runSender(int listener)
{
    QByteArray burst;
    for (int i = 0; i < BurstReports; ++i)
        burst += RunningJob::frame(i);
    for (;;) {
        const int fd = ::accept(listener, nullptr, nullptr);
        if (fd < 0)
            ::_exit(1);
        for (int i = 0; i < ReportsPerRun / BurstReports; ++i)
            RunningJob::sendAll(fd, burst);
        char rest[4096];
        while (::recv(fd, rest, sizeof rest, 0) > 0) {
        }
        ::close(fd);
    }
}

/// What one way took for one run.
struct Result {
    double seconds = 0;
    double longestPauseMs = 0;
};

/// The longest time between two turns of the event loop, from the making to the end.
class PauseMeter
{
public:
    PauseMeter()
    {
        m_sinceTurn.start();
        m_connection = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                                        [this] { turned(); });
        // A turn that finds something to do at once tells of it before, and one that waited, after.
        m_blocking = QObject::connect(QAbstractEventDispatcher::instance(),
                                      &QAbstractEventDispatcher::aboutToBlock, [this] { turned(); });
    }
    ~PauseMeter()
    {
        QObject::disconnect(m_connection);
        QObject::disconnect(m_blocking);
    }
    [[nodiscard]] double longestMs() const { return double(m_longest) / 1e6; }

private:
    void turned()
    {
        m_longest = std::max(m_longest, m_sinceTurn.nsecsElapsed());
        m_sinceTurn.restart();
    }

    QElapsedTimer m_sinceTurn;
    qint64 m_longest = 0;
    QMetaObject::Connection m_connection, m_blocking;
};

Result bareReceive(quint16 port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        qFatal("cannot connect");
    std::vector<char> buffer(256 * 1024);
    qint64 left = qint64(ReportsPerRun) * (RunningJob::ReportBytes + 8);
    QElapsedTimer elapsed;
    elapsed.start();
    while (left > 0)
        left -= ::recv(fd, buffer.data(), buffer.size(), 0);
    const double seconds = double(elapsed.nsecsElapsed()) / 1e9;
    ::close(fd);
    return {seconds, 0};
}

Result qtWay(quint16 port)
{
    QTcpSocket socket;
    QEventLoop loop;
    quint64 size = 0;
    int reports = 0;
    qint64 sum = 0;
    QObject::connect(&socket, &QTcpSocket::readyRead, &loop, [&] {
        for (;;) {
            if (size == 0) {
                if (socket.bytesAvailable() < 8)
                    return;
                socket.read(reinterpret_cast<char *>(&size), 8);
            }
            if (socket.bytesAvailable() < qint64(size))
                return;
            const QJsonObject object = QJsonDocument::fromJson(socket.read(qint64(size))).object();
            size = 0;
            if (object.value("type"_L1).toString() == "operationProgress"_L1)
                sum += object.value("progressType"_L1).toInt() + object.value("userName"_L1).toString().size();
            if (++reports == ReportsPerRun)
                loop.quit();
        }
    });
    QElapsedTimer elapsed;
    elapsed.start();
    socket.connectToHost(u"127.0.0.1"_s, port);
    const PauseMeter pauses;
    loop.exec();
    const double seconds = double(elapsed.nsecsElapsed()) / 1e9;
    if (sum != qint64(ReportsPerRun) * 16)
        qFatal("wrong reports");
    return {seconds, pauses.longestMs()};
}

/// Counts reports; reads the three routing keys of each, or the whole object.
class Counter : public DaemonChannelOwner
{
public:
    Counter(QEventLoop &loop, bool whole, int count) : m_loop(loop), m_whole(whole), m_count(count) {}
    void channelDidConnect() override {}
    QVariantMap pingDetails() override { return {}; }
    void channelDidDisconnect() override { qFatal("disconnected"); }
    void didReceiveMessage(const QVariantList &) override { qFatal("not a report"); }
    void didRefusePayload(const QString &reason) override { qFatal("refused: %s", qUtf8Printable(reason)); }
    void didReceiveProgress(const DaemonMessage &message) override
    {
        if (message.operationStartType() == 1)
            m_sum += message.progressType().value_or(0) + message.userName().value_or(QString()).size();
        if (m_whole)
            m_sum += message.toVariantMap().size() - 7;
        if (++m_reports == m_count)
            m_loop.quit();
    }
    [[nodiscard]] bool right() const { return m_sum >= qint64(m_count) * 16; }

private:
    QEventLoop &m_loop;
    const bool m_whole;
    const int m_count;
    int m_reports = 0;
    qint64 m_sum = 0;
};

/// The monitor itself, without a panel, that counts the reports it has dealt with, and the time from the
/// connection on: its start is measured elsewhere.
class MeasuredMonitor : public CorvaneMonitorController
{
public:
    MeasuredMonitor(Surroundings surroundings, QEventLoop &loop, int count)
        : CorvaneMonitorController(std::move(surroundings)), m_loop(loop), m_left(count)
    {
    }
    void channelDidConnect() override
    {
        m_elapsed.start();
        CorvaneMonitorController::channelDidConnect();
    }
    void didReceiveProgress(const DaemonMessage &message) override
    {
        CorvaneMonitorController::didReceiveProgress(message);
        if (--m_left > 0)
            return;
        m_seconds = double(m_elapsed.nsecsElapsed()) / 1e9;
        m_loop.quit();
    }
    [[nodiscard]] double seconds() const { return m_seconds; }

private:
    QEventLoop &m_loop;
    QElapsedTimer m_elapsed;
    double m_seconds = 0;
    int m_left;
};

enum class Window { Closed, Open };

Result wholeMonitor(quint16 port, int count, Window window)
{
    const TemporaryHome home;
    RunningJob::writeFiles(home, port);
    QEventLoop loop;
    SystemClock clock;
    RecordingStatusItem item;
    DistributedNotificationCenter notifications;
    MeasuredMonitor monitor({.statusItem = item, .clock = clock, .notifications = notifications}, loop, count);
    monitor.awakeFromNib();
    CVSingletonForBackup::shared().scheduleBackupRunning = true;
    if (window == Window::Open)
        monitor.jobReports().showSchedulerProgress();
    const PauseMeter pauses;
    loop.exec();
    if (!item.toolTip().endsWith("Scheduled Backup is in progress."_L1))
        qFatal("wrong tool tip");
    return {monitor.seconds(), pauses.longestMs()};
}

Result ourWay(quint16 port, bool whole, int count)
{
    QEventLoop loop;
    SystemClock clock;
    Counter counter(loop, whole, count);
    DaemonChannel channel(counter, clock, [port] { return qint64(port); });
    QElapsedTimer elapsed;
    elapsed.start();
    channel.start();
    const PauseMeter pauses;
    loop.exec();
    const double seconds = double(elapsed.nsecsElapsed()) / 1e9;
    if (!counter.right())
        qFatal("wrong reports");
    return {seconds, pauses.longestMs()};
}
} // namespace

int main(int argc, char **argv)
{
    quint16 port = 0;
    const int listener = RunningJob::listenOnLoopback(&port);
    const pid_t sender = ::fork();
    if (sender == 0)
        runSender(listener);
    ::close(listener);
    const QApplication application(argc, argv);

    const struct {
        const char *name;
        std::function<Result()> run;
    } ways[] = {
        {"bare recv loop", [port] { return bareReceive(port); }},
        {"QTcpSocket and QJsonDocument", [port] { return qtWay(port); }},
        {"daemon channel, routing keys", [port] { return ourWay(port, false, ReportsPerRun); }},
        {"daemon channel, whole object", [port] { return ourWay(port, true, ReportsPerRun); }},
        {"the monitor", [port] { return wholeMonitor(port, ReportsPerRun, Window::Closed); }},
        {"the monitor, its window open", [port] { return wholeMonitor(port, ReportsPerRun, Window::Open); }},
    };
    // The ways take turns, so that a busy moment of the machine meets all of them.
    std::vector<std::vector<double>> rates(std::size(ways));
    std::vector<double> pauses(std::size(ways), 0);
    for (int run = 0; run < Runs; ++run) {
        for (size_t i = 0; i < std::size(ways); ++i) {
            const Result result = ways[i].run();
            rates[i].push_back(ReportsPerRun / result.seconds);
            pauses[i] = std::max(pauses[i], result.longestPauseMs);
        }
    }
    double burstPause = std::numeric_limits<double>::max();
    for (int run = 0; run < Runs; ++run)
        burstPause = std::min(burstPause, wholeMonitor(port, BurstReports, Window::Open).longestPauseMs);
    ::kill(sender, SIGTERM);
    ::waitpid(sender, nullptr, 0);

    for (auto &list : rates)
        std::sort(list.begin(), list.end());
    const double yardstick = rates[1][Runs / 2];
    std::printf("%d reports of %d bytes a run, %d runs, median\n", ReportsPerRun, int(RunningJob::ReportBytes),
                Runs);
    std::printf("%-32s %12s %8s %16s\n", "", "reports/s", "ratio", "longest pause");
    for (size_t i = 0; i < std::size(ways); ++i) {
        std::printf("%-32s %12.0f %7.2fx %13.2f ms\n", ways[i].name, rates[i][Runs / 2],
                    rates[i][Runs / 2] / yardstick, pauses[i]);
    }
    std::printf("one burst of %d reports, the window open: longest pause of the main loop %.2f ms\n",
                BurstReports, burstPause);
    return 0;
}
