// From the start of the process to the registered status item, and what the process holds when it idles: the
// monitor beside a Qt program that shows a status item and does nothing else. Plays the watcher of status items
// on the session bus itself, so it wants a bus and a display without a panel.
#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

/// What a desktop's host of status items answers on the bus.
class Watcher : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostIsThere)
    Q_PROPERTY(int ProtocolVersion READ version)

public:
    explicit Watcher(QObject *parent) : QDBusAbstractAdaptor(parent) {}
    bool hostIsThere() const { return true; }
    int version() const { return 0; }
    std::function<void()> registered;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &) { registered(); }
};

namespace
{
struct Sample {
    double startMs = 0;
    double residentMb = 0;
    double privateMb = 0;
    int threads = 0;
};

int statusField(qint64 pid, const QByteArray &field)
{
    QFile status(u"/proc/%1/status"_s.arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field + ':'))
            return line.mid(field.size() + 1).simplified().split(' ').first().toInt();
    }
    return 0;
}

Sample measure(Watcher &watcher, const QString &program)
{
    const QTemporaryDir home;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home.path());
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    Sample sample;
    QElapsedTimer clock;
    QEventLoop loop;
    watcher.registered = [&] {
        sample.startMs = double(clock.nsecsElapsed()) / 1e6;
        loop.quit();
    };
    QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
    clock.start();
    process.start(program, {});
    loop.exec();
    watcher.registered = [] {};
    if (sample.startMs > 0) {
        QTimer::singleShot(700, &loop, &QEventLoop::quit); // the first repaint and the fonts are loaded by then
        loop.exec();
        sample.residentMb = statusField(process.processId(), "VmRSS") / 1024.0;
        sample.privateMb = statusField(process.processId(), "RssAnon") / 1024.0;
        sample.threads = statusField(process.processId(), "Threads");
    }
    process.kill();
    process.waitForFinished();
    return sample;
}

void print(const char *name, std::vector<Sample> samples)
{
    const auto median = [&](auto field) {
        std::ranges::nth_element(samples, samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2), {},
                                 field);
        return samples[samples.size() / 2].*field;
    };
    std::printf("%-28s start %6.1f ms   resident %5.1f MB (%.1f of its own)   threads %d\n", name,
                median(&Sample::startMs), median(&Sample::residentMb), median(&Sample::privateMb),
                median(&Sample::threads));
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QObject object;
    Watcher watcher(&object);
    watcher.registered = [] {};
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(u"/StatusNotifierWatcher"_s, &object) ||
        !bus.registerService(u"org.kde.StatusNotifierWatcher"_s)) {
        std::puts("needs a session bus on which nobody plays the watcher of status items");
        return 1;
    }
    const QString folder = QCoreApplication::applicationDirPath();
    std::vector<Sample> monitor;
    std::vector<Sample> bare;
    for (int round = 0; round < 11; ++round) {
        bare.push_back(measure(watcher, folder + u"/bench_bare_tray"_s));
        monitor.push_back(measure(watcher, folder + u"/../bin/corvane-monitor"_s));
        if (monitor.back().startMs <= 0 || bare.back().startMs <= 0) {
            std::puts("a program did not register its status item");
            return 1;
        }
    }
    print("monitor", monitor);
    print("  bare program with an item", bare);
}

#include "StartBenchmark.moc"
