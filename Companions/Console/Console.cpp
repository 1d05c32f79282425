#include "Companions/Console/Console.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::seconds AnswerLimit{10};
constexpr std::chrono::seconds HistoryLimit{60}; ///< thousands of files on a busy machine
constexpr std::chrono::milliseconds PollPace{100};

/// First words of the commands that a companion answers.
constexpr std::array<const char *, 29> DaemonWords = {
    "job",     "interactive", "pause",   "resume",    "stop",      "retry", "tooltip", "send",
    "remote",  "reports",     "garbage", "truncated", "oversized", "slow",  "burst",   "drop",
    "clients", "pace",        "prepare", "file",      "percent",   "ahead", "legacy",  "state",
    "history", "log",         "old",     "web",       "fail"};
constexpr std::array<const char *, 16> ApplicationWords = {
    "sign",      "account", "quota", "plan",     "engine",     "thin",   "schedule", "immediate",
    "schedules", "jobs",    "clear", "language", "appearance", "notify", "throttle", "flag"};

template<typename Words>
bool contains(const Words &words, const QString &word)
{
    return std::any_of(words.begin(), words.end(),
                       [&word](const char *known) { return word == QLatin1StringView(known); });
}

QStringList tableArguments(const QString &table)
{
    return table.isEmpty() ? QStringList() : QStringList{u"--table"_s, table};
}
} // namespace

Console::Console(ConsoleSettings settings, OnFailure onFailure, QObject *parent)
    : QObject(parent), m_settings(std::move(settings)), m_onFailure(onFailure), m_probe(m_settings.monitor),
      m_daemon(u"daemon"_s, m_settings.companionsFolder + u"/corvane-backup-daemon"_s,
               tableArguments(m_settings.table)),
      m_sync(u"sync"_s, m_settings.companionsFolder + u"/corvane-sync-daemon"_s,
             tableArguments(m_settings.table)),
      m_application(u"application"_s, m_settings.companionsFolder + u"/corvane-main-application"_s,
                    tableArguments(m_settings.table)),
      m_front(u"front"_s, m_settings.companionsFolder + u"/Corvane"_s, tableArguments(m_settings.table)),
      m_monitor(u"monitor"_s, m_settings.monitor, {})
{
    addProgramCommands();
    addLifeCommands();
    addWatchCommands();
    addWindowCommands();
    addLogCommands();
    connect(&m_daemon, &Child::printed, this, [this](const QString &line) { m_daemonLines.add(line); });
    m_deadline.setSingleShot(true);
    m_poll.setInterval(PollPace);
}

Console::~Console()
{
    endAll();
}

void Console::enqueue(const QString &line)
{
    m_queue.enqueue(line);
    runNext();
}

void Console::endAfterQueue()
{
    m_endAfterQueue = true;
    runNext();
}

void Console::addCommand(const QString &name, const QString &usage, Action action)
{
    m_commands.insert_or_assign(name, Command{usage, std::move(action)});
}

void Console::addProgramCommands()
{
    addCommand(u"daemon"_s, u"daemon start|stop|crash"_s, [this](const QStringList &words, const QString &) {
        const QString verb = words.value(0);
        if (verb == "start"_L1)
            startChild(m_daemon, true);
        else if (verb == "stop"_L1)
            stopChild(m_daemon, u"quit"_s);
        else if (verb == "crash"_L1)
            stopChild(m_daemon, verb);
        else
            finish(CommandResult::failed(u"start, stop or crash"_s));
    });
    addCommand(
        u"sync"_s,
        u"sync daemon start|stop|crash | sync on|off | sync line TEXT | sync COMMAND of the sync daemon"_s,
        [this](const QStringList &words, const QString &rest) { runSyncCommand(words, rest); });
}

void Console::runNext()
{
    if (m_busy)
        return;
    if (!m_queue.isEmpty()) {
        m_busy = true;
        run(m_queue.dequeue());
    } else if (m_endAfterQueue) {
        m_busy = true; // nothing more runs
        Q_EMIT finished(0);
    }
}

void Console::run(const QString &line)
{
    printLine(u"> "_s + line);
    const QString word = line.section(u' ', 0, 0, QString::SectionSkipEmpty);
    const QString rest = line.trimmed().mid(word.size()).trimmed();
    const auto own = m_commands.find(word);
    if (own != m_commands.end())
        own->second.action(rest.simplified().split(u' ', Qt::SkipEmptyParts), rest);
    else if (contains(DaemonWords, word))
        forward(m_daemon, line);
    else if (contains(ApplicationWords, word))
        forward(m_application, line);
    else
        finish(CommandResult::failed(u"unknown command: %1 (try help)"_s.arg(word)));
}

void Console::finish(const CommandResult &result)
{
    disconnect(m_wait);
    m_deadline.stop();
    m_deadline.disconnect();
    m_poll.stop();
    m_poll.disconnect();
    printResult(result);
    if (!result.done && m_onFailure == OnFailure::Stop) {
        m_queue.clear();
        Q_EMIT finished(1);
        return;
    }
    m_busy = false;
    // By way of the event loop, so that a long script of quick commands does not pile up on the stack.
    QMetaObject::invokeMethod(this, &Console::runNext, Qt::QueuedConnection);
}

void Console::finishAfter(std::chrono::milliseconds limit, const QString &failure)
{
    connect(&m_deadline, &QTimer::timeout, this, [this, failure] { finish(CommandResult::failed(failure)); });
    m_deadline.start(limit);
}

void Console::startChild(Child &child, bool answersStart)
{
    if (child.isRunning())
        return finish(CommandResult::failed(child.name() + u" is running already"_s));
    if (answersStart) {
        m_wait = connect(&child, &Child::answered, this, [this](bool done, const QString &text) {
            finish({done, text});
        });
        finishAfter(AnswerLimit, child.name() + u" does not answer"_s);
    }
    if (!child.start())
        finish(CommandResult::failed(u"cannot start "_s + child.program()));
    else if (!answersStart)
        finish(CommandResult::ok());
}

void Console::stopChild(Child &child, const QString &command)
{
    if (!child.isRunning())
        return finish(CommandResult::failed(child.name() + u" is not running"_s));
    m_wait = connect(&child, &Child::ended, this, [this] { finish(CommandResult::ok()); });
    finishAfter(AnswerLimit, child.name() + u" does not end"_s);
    child.writeLine(command);
}

void Console::forward(Child &child, const QString &line)
{
    if (!child.isRunning())
        return finish(CommandResult::failed(child.name() + u" is not running"_s));
    m_wait = connect(&child, &Child::answered, this, [this](bool done, const QString &text) {
        finish({done, text});
    });
    finishAfter(line.startsWith(u"history"_s) ? HistoryLimit : AnswerLimit,
                child.name() + u" does not answer"_s);
    child.writeLine(line);
}

void Console::runSyncCommand(const QStringList &words, const QString &rest)
{
    const QString verb = words.value(0);
    const QString order = words.value(1);
    if (verb == "daemon"_L1 && order == "start"_L1)
        startChild(m_sync, true);
    else if (verb == "daemon"_L1 && order == "stop"_L1)
        stopChild(m_sync, u"quit"_s);
    else if (verb == "daemon"_L1 && order == "crash"_L1)
        stopChild(m_sync, u"die"_s);
    else if (verb.isEmpty() || verb == "daemon"_L1)
        finish(CommandResult::failed(u"daemon start, stop or crash, or a command (try help)"_s));
    else if (verb == "on"_L1) // the user switches it in the main application
        forward(m_application, u"notify EnableDisableSync sync=EnableSync"_s);
    else if (verb == "off"_L1)
        forward(m_application, u"notify EnableDisableSync sync=DisableSync"_s);
    else if (verb == "line"_L1)
        forward(m_sync, u"status "_s + rest.mid(verb.size()).trimmed());
    else
        forward(m_sync, rest);
}

void Console::printHelp()
{
    printLine(u"programs, watching:"_s);
    for (const auto &[name, command] : m_commands)
        printLine(u"  "_s + command.usage);
    printHelpOf({&m_daemon, &m_sync, &m_application});
}

void Console::printHelpOf(QList<Child *> children)
{
    while (!children.isEmpty() && !children.first()->isRunning())
        printLine(children.takeFirst()->name() + u" is not running"_s);
    if (children.isEmpty())
        return finish(CommandResult::ok());
    // Each companion knows its own commands; one at a time, for each ends its list with an answer.
    Child &child = *children.takeFirst();
    disconnect(m_wait);
    m_wait = connect(&child, &Child::answered, this, [this, children] { printHelpOf(children); });
    m_deadline.disconnect();
    finishAfter(AnswerLimit, child.name() + u" does not answer"_s);
    printLine(child.name() + u':');
    child.writeLine(u"help"_s);
}
