// The commands that start and end the monitor and the application in front, and what is expected of their ends.
// Either may run more than once in a world: a monitor relaunches itself, and starts the application by itself.

#include "Companions/Console/Console.h"

#include <QHash>

#include <csignal>

#include <sys/resource.h>

namespace
{
constexpr std::chrono::milliseconds EndPatience{3000};
constexpr std::chrono::seconds HandOverLimit{5};

std::optional<int> signalNumber(const QString &name)
{
    static const QHash<QString, int> numbers{{QStringLiteral("TERM"), SIGTERM},
                                             {QStringLiteral("INT"), SIGINT},
                                             {QStringLiteral("HUP"), SIGHUP},
                                             {QStringLiteral("KILL"), SIGKILL}};
    const auto found = numbers.find(name);
    return found == numbers.end() ? std::nullopt : std::optional(*found);
}

/// On a full disk no file of that program can grow, whoever runs it and whatever it is.
bool fillDisk(qint64 pid, bool isFull)
{
    rlimit limit{};
    const auto process = static_cast<pid_t>(pid);
    if (prlimit(process, RLIMIT_FSIZE, nullptr, &limit) != 0)
        return false;
    limit.rlim_cur = isFull ? 0 : limit.rlim_max;
    return prlimit(process, RLIMIT_FSIZE, &limit, nullptr) == 0;
}

QString describeExit(std::optional<int> code)
{
    return code ? QString::number(*code) : QStringLiteral("no exit status");
}
} // namespace

void Console::addLifeCommands()
{
    addCommand(QStringLiteral("application"),
               QStringLiteral("application start|stop|front|away   front: the one that counts as running"),
               [this](const QStringList &words, const QString &) { runApplicationCommand(words.value(0)); });
    addCommand(QStringLiteral("monitor"),
               QStringLiteral("monitor start|stop|again|signal TERM|INT|HUP|KILL|disk full|free"),
               [this](const QStringList &words, const QString &) {
                   const QString verb = words.value(0);
                   if (verb == QLatin1StringView("start"))
                       startChild(m_monitor, false);
                   else if (verb == QLatin1StringView("stop"))
                       stopMonitor();
                   else if (verb == QLatin1StringView("again"))
                       startSecondMonitor();
                   else if (verb == QLatin1StringView("signal"))
                       signalMonitor(words.value(1));
                   else if (verb == QLatin1StringView("disk"))
                       fillDiskOfMonitor(words.value(1));
                   else
                       finish(CommandResult::failed(QStringLiteral("start, stop, again, signal or disk")));
               });
}

void Console::endAll()
{
    endChildrenRunning(m_settings.monitor, EndPatience);
    m_front.end(EndPatience);
    endChildrenRunning(m_front.program(), EndPatience);
}

void Console::runApplicationCommand(const QString &verb)
{
    if (verb == QLatin1StringView("start"))
        return startChild(m_application, true);
    if (verb == QLatin1StringView("stop"))
        return stopChild(m_application, QStringLiteral("quit"));
    if (verb == QLatin1StringView("front"))
        return startChild(m_front, true);
    if (verb != QLatin1StringView("away"))
        return finish(CommandResult::failed(QStringLiteral("start, stop, front or away")));
    if (childrenRunning(m_front.program()).isEmpty())
        return finish(CommandResult::failed(QStringLiteral("the application is not in front")));
    m_front.end(EndPatience);
    endChildrenRunning(m_front.program(), EndPatience); // one that the monitor has started
    finish(CommandResult::ok());
}

void Console::expectApplication(const QString &text)
{
    watch(wantedOf(text).limit, [this] {
        return childrenRunning(m_front.program()).isEmpty()
                   ? CommandResult::failed(QStringLiteral("the application is not in front"))
                   : CommandResult::ok();
    });
}

void Console::stopMonitor()
{
    if (childrenRunning(m_settings.monitor).isEmpty())
        return finish(CommandResult::failed(QStringLiteral("monitor is not running")));
    m_monitor.end(EndPatience);
    endChildrenRunning(m_settings.monitor, EndPatience); // a monitor that has relaunched itself
    finish(CommandResult::ok());
}

void Console::signalMonitor(const QString &name)
{
    const auto number = signalNumber(name);
    const QList<qint64> running = childrenRunning(m_settings.monitor);
    if (!number || running.isEmpty())
        return finish(CommandResult::failed(number ? QStringLiteral("monitor is not running")
                                                   : QStringLiteral("TERM, INT, HUP or KILL")));
    for (const qint64 pid : running)
        ::kill(static_cast<pid_t>(pid), *number);
    finish(CommandResult::ok());
}

void Console::fillDiskOfMonitor(const QString &word)
{
    const bool isFull = word == QLatin1StringView("full");
    if (!isFull && word != QLatin1StringView("free"))
        return finish(CommandResult::failed(QStringLiteral("full or free")));
    const QList<qint64> running = childrenRunning(m_settings.monitor);
    bool done = !running.isEmpty();
    for (const qint64 pid : running)
        done = fillDisk(pid, isFull) && done;
    finish(done ? CommandResult::ok() : CommandResult::failed(QStringLiteral("no monitor with such a limit")));
}

void Console::startSecondMonitor()
{
    const QList<qint64> first = childrenRunning(m_settings.monitor);
    if (first.isEmpty())
        return finish(CommandResult::failed(QStringLiteral("monitor is not running")));
    m_second = std::make_unique<Child>(QStringLiteral("second monitor"), m_settings.monitor, QStringList());
    m_wait = connect(m_second.get(), &Child::ended, this, [this, first] {
        const auto code = m_second->exitCode();
        if (code != 0)
            finish(
                CommandResult::failed(QStringLiteral("the second monitor ended with ") + describeExit(code)));
        else if (childrenRunning(m_settings.monitor) != first)
            finish(CommandResult::failed(QStringLiteral("the first monitor has not stayed")));
        else
            finish(CommandResult::ok());
    });
    finishAfter(HandOverLimit, QStringLiteral("the second monitor does not end"));
    if (!m_second->start())
        finish(CommandResult::failed(QStringLiteral("cannot start ") + m_second->program()));
}

void Console::expectMonitorEnded(const QString &text)
{
    watch(wantedOf(text).limit, [this, adopted = std::optional<int>(0)]() mutable {
        if (m_monitor.isRunning() || !childrenRunning(m_settings.monitor).isEmpty())
            return CommandResult::failed(QStringLiteral("the monitor is running"));
        for (const auto &exit : reapEnded(m_settings.monitor)) {
            if (exit != 0)
                adopted = exit;
        }
        const auto bad = m_monitor.exitCode() == 0 ? adopted : m_monitor.exitCode();
        return bad == 0 ? CommandResult::ok()
                        : CommandResult::failed(QStringLiteral("the monitor ended with ") + describeExit(bad));
    });
}
