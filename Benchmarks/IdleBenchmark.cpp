// What the monitor costs while nothing happens: an hour of its passes, run through by the manual clock, and a
// minute of the real program with a daemon that is connected and silent. The argument is the number of real
// seconds.
#include "Platform/Home.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace
{
void writeUser(const TemporaryHome &home, quint16 port)
{
    const QString user = u"ann@example.org"_s;
    const auto file = [&](const char *key) { return pathValue(QLatin1StringView(key), {user}); };
    home.writeList(file("LastUserLoginDetailsFilePath"), QVariantMap{{u"Username"_s, user}});
    home.writeList(file("TCPPortFile"), QVariantMap{{u"port"_s, qlonglong(port)}});
    home.writeList(file("UserDetailsPath"),
                   QVariantMap{{u"TOTALQUOTASIZE"_s, u"bdbd"_s}, {u"USEDQUOTASIZE"_s, u"bb"_s}});
    ArchiveMaker maker;
    home.write(file("SchedulerSettingsFile"), maker.schedules({maker.record({{u"corvaneUserName"_s, user},
                                                                             {u"profileName"_s, *consoleUser()},
                                                                             {u"frequency"_s, 2},
                                                                             {u"status"_s, 0}})}));
}

double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

struct Cost {
    double seconds = 0;
    long switches = 0;
};

/// Processor time and voluntary context switches of all threads of a process so far.
Cost costOf(qint64 pid)
{
    Cost cost;
    const QDir tasks(u"/proc/%1/task"_s.arg(pid));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile schedule(tasks.filePath(task + u"/schedstat"_s));
        if (schedule.open(QIODevice::ReadOnly))
            cost.seconds += schedule.readAll().split(' ').value(0).toDouble() / 1e9;
        QFile status(tasks.filePath(task + u"/status"_s));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                cost.switches += line.mid(line.indexOf(':') + 1).trimmed().toLong();
        }
    }
    return cost;
}

void waitFor(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

void idleHour(quint16 port)
{
    const TemporaryHome home;
    writeUser(home, port);
    ManualClock clock(QDateTime::currentDateTime());
    RecordingStatusItem item;
    DistributedNotificationCenter notifications;
    CorvaneMonitorController controller({.statusItem = item, .clock = clock, .notifications = notifications});
    controller.awakeFromNib();
    const double before = processorSeconds();
    clock.advance(1h);
    const double spent = processorSeconds() - before;
    std::printf("an idle hour of passes      %8.1f ms of processor time, %.4f%% of one core\n", spent * 1000,
                spent / 3600 * 100);
}

void realTime(quint16 port, int seconds)
{
    const TemporaryHome home;
    writeUser(home, port);
    QProcess monitor;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"QT_QPA_PLATFORM"_s);
    monitor.setProcessEnvironment(environment);
    monitor.setStandardErrorFile(QProcess::nullDevice());
    monitor.start(QCoreApplication::applicationDirPath() + u"/../bin/corvane-monitor"_s, {});
    waitFor(35s); // the single calls of the start are over by then
    const Cost before = costOf(monitor.processId());
    waitFor(std::chrono::seconds(seconds));
    const Cost after = costOf(monitor.processId());
    std::printf("%3d s of the real program   %8.2f ms of processor time, %.4f%% of one core, "
                "%ld voluntary context switches\n",
                seconds, (after.seconds - before.seconds) * 1000,
                (after.seconds - before.seconds) / seconds * 100, after.switches - before.switches);
    monitor.terminate();
    monitor.waitForFinished();
}
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QTcpServer daemon; // takes the connection and says nothing
    daemon.listen(QHostAddress::LocalHost);
    idleHour(daemon.serverPort());
    realTime(daemon.serverPort(), argc > 1 ? std::atoi(argv[1]) : 60);
}
