// What it costs to look for a daemon that is not there, from the start of the search on: the reconnect loop for
// some seconds (the argument, 60 if none), with processor time, threads, descriptors and memory before and
// after. Beside it a bare loop of the same pace.
#include "Messaging/DaemonChannel.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{
/// A port that is bound, so that nobody else takes it, but on which nobody listens.
int reserveClosedPort(quint16 *port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(fd, reinterpret_cast<sockaddr *>(&address), size) != 0)
        qFatal("cannot bind");
    ::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size);
    *port = ntohs(address.sin_port);
    return fd;
}

class Counter : public DaemonChannelOwner
{
public:
    int attempts = 0;
    void channelDidConnect() override { qFatal("connected"); }
    QVariantMap pingDetails() override { return {}; }
    void channelDidDisconnect() override { ++attempts; }
    void didReceiveProgress(const DaemonMessage &) override {}
    void didReceiveMessage(const QVariantList &) override {}
    void didRefusePayload(const QString &) override {}
};

struct Usage {
    double processorSeconds = 0;
    int threads = 0;
    int descriptors = 0;
    long residentKiB = 0;

    static Usage now()
    {
        rusage used{};
        ::getrusage(RUSAGE_SELF, &used);
        const auto seconds = [](const timeval &time) {
            return double(time.tv_sec) + double(time.tv_usec) / 1e6;
        };
        QFile pages(u"/proc/self/statm"_s);
        pages.open(QIODevice::ReadOnly);
        return {seconds(used.ru_utime) + seconds(used.ru_stime), entries(u"/proc/self/task"_s),
                entries(u"/proc/self/fd"_s),
                pages.readAll().split(' ').at(1).toLong() * (::getpagesize() / 1024)};
    }

private:
    static int entries(const QString &folder)
    {
        return int(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size());
    }
};

/// What the least that anybody could do takes for so many attempts, with the pauses that the channel makes at
/// its easy pace: in seconds of processor time for each.
double bareAttempt(quint16 port)
{
    constexpr int Attempts = 100;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const double before = Usage::now().processorSeconds;
    for (int i = 0; i < Attempts; ++i) {
        ::usleep(100'000);
        const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
            qFatal("connected");
        ::close(fd);
    }
    return (Usage::now().processorSeconds - before) / Attempts;
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const double seconds = argc > 1 ? std::atof(argv[1]) : 60.0;
    quint16 port = 0;
    const int reserved = reserveClosedPort(&port);
    Counter counter;
    SystemClock clock;
    DaemonChannel channel(counter, clock, [port] { return qint64(port); });
    const Usage before = Usage::now();
    QElapsedTimer elapsed;
    elapsed.start();
    channel.start();
    QTimer::singleShot(int(seconds * 1000), Qt::PreciseTimer, qApp, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    const Usage after = Usage::now();
    const double passed = double(elapsed.nsecsElapsed()) / 1e9;

    std::printf("no daemon for %.1f s: %d attempts\n", passed, counter.attempts);
    std::printf("%-16s %10s %10s\n", "", "before", "after");
    std::printf("%-16s %10d %10d\n", "threads", before.threads, after.threads);
    std::printf("%-16s %10d %10d\n", "descriptors", before.descriptors, after.descriptors);
    std::printf("%-16s %10ld %10ld\n", "resident KiB", before.residentKiB, after.residentKiB);
    std::printf("processor: %.2f%% of one core; as many attempts of a bare loop of sleep, socket, connect and "
                "close: %.2f%%\n",
                100 * (after.processorSeconds - before.processorSeconds) / passed,
                100 * bareAttempt(port) * counter.attempts / passed);
    ::close(reserved);
    return 0;
}
