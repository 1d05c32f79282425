// What a running job costs while nobody does anything: processor time in percent of one core, at 20 reports a
// second, with the progress window open and closed, and with no reports at all; beside them a program that does
// nothing but read the same reports with QTcpSocket and QJsonDocument. The reports come from a process of their
// own.
#include "Benchmarks/RunningJob.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Utility/CVSingletonForBackup.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTimer>

#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <thread>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace
{
constexpr int ReportsPerSecond = 20;

/// The sender: reports at an even pace on each connection, until it is closed.
[[noreturn]] void runSender(int listener)
{
    for (;;) {
        const int fd = ::accept(listener, nullptr, nullptr);
        if (fd < 0)
            ::_exit(1);
        char rest[4096];
        for (int number = 1; ::recv(fd, rest, sizeof rest, MSG_DONTWAIT) != 0; ++number) {
            RunningJob::sendAll(fd, RunningJob::frame(number));
            std::this_thread::sleep_for(1000ms / ReportsPerSecond);
        }
        ::close(fd);
    }
}

/// Accepts and is silent.
[[noreturn]] void runSilence(int listener)
{
    for (;;) {
        if (::accept(listener, nullptr, nullptr) < 0)
            ::_exit(1);
    }
}

pid_t startChild(void (*run)(int listener), int listener)
{
    const pid_t child = ::fork();
    if (child == 0)
        run(listener);
    return child;
}

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Percent of one core that the event loop takes over `length`; the first moments are not counted.
double percentOfOneCore(std::chrono::seconds length)
{
    QEventLoop loop; // the application's own end would close the window
    QTimer::singleShot(2s, &loop, &QEventLoop::quit);
    loop.exec();
    const double before = processorSeconds();
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer::singleShot(length, &loop, &QEventLoop::quit);
    loop.exec();
    return 100 * (processorSeconds() - before) / (double(elapsed.nsecsElapsed()) / 1e9);
}

double bareReader(quint16 port, std::chrono::seconds length)
{
    QTcpSocket socket;
    qint64 figures = 0;
    constexpr qint64 FrameBytes = RunningJob::ReportBytes + 8;
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket, [&] {
        while (socket.bytesAvailable() >= FrameBytes)
            figures += QJsonDocument::fromJson(socket.read(FrameBytes).mid(8)).object().size();
    });
    socket.connectToHost(u"127.0.0.1"_s, port);
    const double percent = percentOfOneCore(length);
    if (figures == 0)
        qFatal("nothing was read");
    return percent;
}

enum class Window { Closed, Open };

double monitorsPercent(quint16 port, Window window, std::chrono::seconds length)
{
    const TemporaryHome home;
    RunningJob::writeFiles(home, port);
    SystemClock clock;
    RecordingStatusItem item;
    DistributedNotificationCenter notifications;
    CorvaneMonitorController monitor({.statusItem = item, .clock = clock, .notifications = notifications});
    monitor.awakeFromNib();
    CVSingletonForBackup::shared().scheduleBackupRunning = true;
    if (window == Window::Open)
        monitor.jobReports().showSchedulerProgress();
    return percentOfOneCore(length);
}
} // namespace

int main(int argc, char **argv)
{
    const std::chrono::seconds length(argc > 1 ? std::max(1, atoi(argv[1])) : 20);
    quint16 port = 0, silentPort = 0;
    const int listener = RunningJob::listenOnLoopback(&port);
    const int silent = RunningJob::listenOnLoopback(&silentPort);
    const pid_t children[] = {startChild(runSender, listener), startChild(runSilence, silent)};
    ::close(listener);
    ::close(silent);
    const QApplication application(argc, argv);
    std::printf("percent of one core over %d s, %d reports a second\n", int(length.count()), ReportsPerSecond);
    std::printf("QTcpSocket and QJsonDocument %6.2f\n", bareReader(port, length));
    std::printf("window closed                %6.2f\n", monitorsPercent(port, Window::Closed, length));
    std::printf("window open                  %6.2f\n", monitorsPercent(port, Window::Open, length));
    std::printf("closed, and no reports       %6.2f\n", monitorsPercent(silentPort, Window::Closed, length));
    for (const pid_t child : children) {
        ::kill(child, SIGTERM);
        ::waitpid(child, nullptr, 0);
    }
    return 0;
}
