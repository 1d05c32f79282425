// The commands that start and end the monitor and the application in front, and what is expected of their ends.
// Either may run more than once in a world: a monitor relaunches itself, and starts the application by itself.

#include "Companions/Console/Console.h"

#include <QHash>

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds EndPatience{3000};
constexpr std::chrono::seconds HandOverLimit{5};

std::optional<int> signalNumber(const QString &name)
{
    static const QHash<QString, int> numbers{
        {u"TERM"_s, SIGTERM}, {u"INT"_s, SIGINT}, {u"HUP"_s, SIGHUP}, {u"KILL"_s, SIGKILL}};
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
    return code ? QString::number(*code) : u"no exit status"_s;
}
} // namespace

void Console::addLifeCommands()
{
    addCommand(u"application"_s, u"application start|stop|front|away   front: the one that counts as running"_s,
               [this](const QStringList &words, const QString &) { runApplicationCommand(words.value(0)); });
    addCommand(u"monitor"_s, u"monitor start|stop|again|signal TERM|INT|HUP|KILL|disk full|free"_s,
               [this](const QStringList &words, const QString &) {
                   const QString verb = words.value(0);
                   if (verb == "start"_L1)
                       startChild(m_monitor, false);
                   else if (verb == "stop"_L1)
                       stopMonitor();
                   else if (verb == "again"_L1)
                       startSecondMonitor();
                   else if (verb == "signal"_L1)
                       signalMonitor(words.value(1));
                   else if (verb == "disk"_L1)
                       fillDiskOfMonitor(words.value(1));
                   else
                       finish(CommandResult::failed(u"start, stop, again, signal or disk"_s));
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
    if (verb == "start"_L1)
        return startChild(m_application, true);
    if (verb == "stop"_L1)
        return stopChild(m_application, u"quit"_s);
    if (verb == "front"_L1)
        return startChild(m_front, true);
    if (verb != "away"_L1)
        return finish(CommandResult::failed(u"start, stop, front or away"_s));
    if (childrenRunning(m_front.program()).isEmpty())
        return finish(CommandResult::failed(u"the application is not in front"_s));
    m_front.end(EndPatience);
    endChildrenRunning(m_front.program(), EndPatience); // one that the monitor has started
    finish(CommandResult::ok());
}

void Console::expectApplication(const QString &text)
{
    watch(wantedOf(text).limit, [this] {
        return childrenRunning(m_front.program()).isEmpty()
                   ? CommandResult::failed(u"the application is not in front"_s)
                   : CommandResult::ok();
    });
}

void Console::stopMonitor()
{
    if (childrenRunning(m_settings.monitor).isEmpty())
        return finish(CommandResult::failed(u"monitor is not running"_s));
    m_monitor.end(EndPatience);
    endChildrenRunning(m_settings.monitor, EndPatience); // a monitor that has relaunched itself
    finish(CommandResult::ok());
}

void Console::signalMonitor(const QString &name)
{
    const auto number = signalNumber(name);
    const QList<qint64> running = childrenRunning(m_settings.monitor);
    if (!number || running.isEmpty())
        return finish(
            CommandResult::failed(number ? u"monitor is not running"_s : u"TERM, INT, HUP or KILL"_s));
    for (const qint64 pid : running)
        ::kill(static_cast<pid_t>(pid), *number);
    finish(CommandResult::ok());
}

void Console::fillDiskOfMonitor(const QString &word)
{
    const bool isFull = word == "full"_L1;
    if (!isFull && word != "free"_L1)
        return finish(CommandResult::failed(u"full or free"_s));
    const QList<qint64> running = childrenRunning(m_settings.monitor);
    bool done = !running.isEmpty();
    for (const qint64 pid : running)
        done = fillDisk(pid, isFull) && done;
    finish(done ? CommandResult::ok() : CommandResult::failed(u"no monitor with such a limit"_s));
}

void Console::startSecondMonitor()
{
    const QList<qint64> first = childrenRunning(m_settings.monitor);
    if (first.isEmpty())
        return finish(CommandResult::failed(u"monitor is not running"_s));
    m_second = std::make_unique<Child>(u"second monitor"_s, m_settings.monitor, QStringList());
    m_wait = connect(m_second.get(), &Child::ended, this, [this, first] {
        const auto code = m_second->exitCode();
        if (code != 0)
            finish(CommandResult::failed(u"the second monitor ended with "_s + describeExit(code)));
        else if (childrenRunning(m_settings.monitor) != first)
            finish(CommandResult::failed(u"the first monitor has not stayed"_s));
        else
            finish(CommandResult::ok());
    });
    finishAfter(HandOverLimit, u"the second monitor does not end"_s);
    if (!m_second->start())
        finish(CommandResult::failed(u"cannot start "_s + m_second->program()));
}

void Console::expectMonitorEnded(const QString &text)
{
    watch(wantedOf(text).limit, [this, adopted = std::optional<int>(0)]() mutable {
        if (m_monitor.isRunning() || !childrenRunning(m_settings.monitor).isEmpty())
            return CommandResult::failed(u"the monitor is running"_s);
        for (const auto &exit : reapEnded(m_settings.monitor)) {
            if (exit != 0)
                adopted = exit;
        }
        const auto bad = m_monitor.exitCode() == 0 ? adopted : m_monitor.exitCode();
        return bad == 0 ? CommandResult::ok()
                        : CommandResult::failed(u"the monitor ended with "_s + describeExit(bad));
    });
}
