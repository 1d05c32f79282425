#include "Companions/Console/Console.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace
{
constexpr std::chrono::seconds AnswerLimit{10};
constexpr std::chrono::seconds WatchLimit{10};
constexpr std::chrono::seconds ScreenshotLimit{30};
constexpr std::chrono::milliseconds PollPace{100};
constexpr std::chrono::milliseconds EndPatience{3000};
constexpr int SettledPolls = 4; ///< polls with one and the same text before it counts as the new one

/// First words of the commands that a companion answers.
constexpr std::array<const char *, 17> DaemonWords = {
    "job",     "interactive", "pause",     "resume",    "stop", "retry", "tooltip", "send",   "remote",
    "reports", "garbage",     "truncated", "oversized", "slow", "burst", "drop",    "clients"};
constexpr std::array<const char *, 10> ApplicationWords = {
    "sign", "quota", "plan", "schedule", "immediate", "schedules", "clear", "language", "appearance", "notify"};

template<typename Words>
bool contains(const Words &words, const QString &word)
{
    return std::any_of(words.begin(), words.end(),
                       [&word](const char *known) { return word == QLatin1StringView(known); });
}

QStringList tableArguments(const QString &table)
{
    return table.isEmpty() ? QStringList() : QStringList{QStringLiteral("--table"), table};
}
} // namespace

Console::Console(ConsoleSettings settings, OnFailure onFailure, QObject *parent)
    : QObject(parent), m_settings(std::move(settings)), m_onFailure(onFailure), m_probe(m_settings.monitor),
      m_daemon(QStringLiteral("daemon"), m_settings.companionsFolder + QStringLiteral("/corvane-backup-daemon"),
               tableArguments(m_settings.table)),
      m_application(QStringLiteral("application"),
                    m_settings.companionsFolder + QStringLiteral("/corvane-main-application"),
                    tableArguments(m_settings.table)),
      m_monitor(QStringLiteral("monitor"), m_settings.monitor, {})
{
    addProgramCommands();
    addWatchCommands();
    m_deadline.setSingleShot(true);
    m_poll.setInterval(PollPace);
}

Console::~Console()
{
    endChildrenRunning(m_settings.monitor, EndPatience);
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
    addCommand(QStringLiteral("daemon"), QStringLiteral("daemon start|stop|crash"),
               [this](const QStringList &words, const QString &) {
                   const QString verb = words.value(0);
                   if (verb == QLatin1StringView("start"))
                       startChild(m_daemon, true);
                   else if (verb == QLatin1StringView("stop"))
                       stopChild(m_daemon, QStringLiteral("quit"));
                   else if (verb == QLatin1StringView("crash"))
                       stopChild(m_daemon, verb);
                   else
                       finish(CommandResult::failed(QStringLiteral("start, stop or crash")));
               });
    addCommand(QStringLiteral("application"), QStringLiteral("application start|stop"),
               [this](const QStringList &words, const QString &) {
                   if (words.value(0) == QLatin1StringView("start"))
                       startChild(m_application, true);
                   else
                       stopChild(m_application, QStringLiteral("quit"));
               });
    addCommand(QStringLiteral("monitor"), QStringLiteral("monitor start|stop"),
               [this](const QStringList &words, const QString &) {
                   if (words.value(0) == QLatin1StringView("start"))
                       startChild(m_monitor, false);
                   else
                       stopMonitor();
               });
}

void Console::addWatchCommands()
{
    addCommand(QStringLiteral("wait"), QStringLiteral("wait SECONDS"),
               [this](const QStringList &words, const QString &) {
                   bool isNumber = false;
                   const double seconds = words.value(0).toDouble(&isNumber);
                   if (!isNumber || seconds < 0)
                       return finish(CommandResult::failed(QStringLiteral("needs a number of seconds")));
                   QTimer::singleShot(static_cast<int>(seconds * 1000), this,
                                      [this] { finish(CommandResult::ok()); });
               });
    addCommand(QStringLiteral("expect"),
               QStringLiteral("expect tooltip TEXT [SECONDS] | expect new tooltip [SECONDS]"),
               [this](const QStringList &words, const QString &rest) {
                   if (words.value(0) == QLatin1StringView("tooltip"))
                       expectToolTip(rest.section(u' ', 1).trimmed());
                   else if (words.value(0) == QLatin1StringView("new") &&
                            words.value(1) == QLatin1StringView("tooltip"))
                       expectNewToolTip(words.mid(2));
                   else
                       finish(CommandResult::failed(QStringLiteral("what should be expected?")));
               });
    addCommand(QStringLiteral("show"),
               QStringLiteral("show tooltip                  as the desktop's host is told it"),
               [this](const QStringList &, const QString &) {
                   const auto text = m_probe.toolTip();
                   finish(text ? CommandResult::ok(*text)
                               : CommandResult::failed(QStringLiteral("no status item")));
               });
    addCommand(QStringLiteral("screenshot"),
               QStringLiteral("screenshot NAME               of the panel and the tool tip"),
               [this](const QStringList &words, const QString &) { takeScreenshot(words.value(0)); });
    addCommand(QStringLiteral("help"), QStringLiteral("help"),
               [this](const QStringList &, const QString &) { printHelp(); });
    addCommand(QStringLiteral("quit"), QStringLiteral("quit"), [this](const QStringList &, const QString &) {
        m_queue.clear();
        m_endAfterQueue = true;
        finish(CommandResult::ok());
    });
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
    printLine(QStringLiteral("> ") + line);
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
        finish(CommandResult::failed(QStringLiteral("unknown command: %1 (try help)").arg(word)));
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
        return finish(CommandResult::failed(child.name() + QStringLiteral(" is running already")));
    if (answersStart) {
        m_wait = connect(&child, &Child::answered, this, [this](bool done, const QString &text) {
            finish({done, text});
        });
        finishAfter(AnswerLimit, child.name() + QStringLiteral(" does not answer"));
    }
    if (!child.start())
        finish(CommandResult::failed(QStringLiteral("cannot start ") + child.program()));
    else if (!answersStart)
        finish(CommandResult::ok());
}

void Console::stopChild(Child &child, const QString &command)
{
    if (!child.isRunning())
        return finish(CommandResult::failed(child.name() + QStringLiteral(" is not running")));
    m_wait = connect(&child, &Child::ended, this, [this] { finish(CommandResult::ok()); });
    finishAfter(AnswerLimit, child.name() + QStringLiteral(" does not end"));
    child.writeLine(command);
}

void Console::forward(Child &child, const QString &line)
{
    if (!child.isRunning())
        return finish(CommandResult::failed(child.name() + QStringLiteral(" is not running")));
    m_wait = connect(&child, &Child::answered, this, [this](bool done, const QString &text) {
        finish({done, text});
    });
    finishAfter(AnswerLimit, child.name() + QStringLiteral(" does not answer"));
    child.writeLine(line);
}

void Console::stopMonitor()
{
    if (childrenRunning(m_settings.monitor).isEmpty())
        return finish(CommandResult::failed(QStringLiteral("monitor is not running")));
    m_monitor.end(EndPatience);
    endChildrenRunning(m_settings.monitor, EndPatience); // a monitor that has relaunched itself
    finish(CommandResult::ok());
}

void Console::expectToolTip(const QString &rest)
{
    bool hasLimit = false;
    const int limit = rest.section(u' ', -1).toInt(&hasLimit);
    QString wanted = hasLimit ? rest.section(u' ', 0, -2).trimmed() : rest;
    if (wanted.size() > 1 && wanted.startsWith(u'"') && wanted.endsWith(u'"'))
        wanted = wanted.mid(1, wanted.size() - 2);
    if (wanted.isEmpty())
        return finish(CommandResult::failed(QStringLiteral("needs a text")));
    watchToolTip(hasLimit ? std::chrono::seconds(limit) : WatchLimit,
                 [wanted](const QString &seen) { return seen.contains(wanted); });
}

void Console::expectNewToolTip(const QStringList &words)
{
    bool hasLimit = false;
    const int limit = words.value(0).toInt(&hasLimit);
    watchToolTip(hasLimit ? std::chrono::seconds(limit) : WatchLimit,
                 [before = m_lastToolTip, candidate = QString(), polls = 0](const QString &seen) mutable {
                     polls = seen == candidate ? polls + 1 : 0;
                     candidate = seen;
                     // The name alone is what stands there between two states.
                     return seen != before && seen.contains(u'\n') && polls >= SettledPolls;
                 });
}

void Console::watchToolTip(std::chrono::seconds limit, std::function<bool(const QString &)> isMet)
{
    connect(&m_poll, &QTimer::timeout, this,
            [this, isMet = std::move(isMet), deadline = QDeadlineTimer(limit)]() mutable {
                const auto seen = m_probe.toolTip();
                if (seen && isMet(*seen)) {
                    m_lastToolTip = *seen;
                    finish(CommandResult::ok(*seen));
                } else if (deadline.hasExpired()) {
                    finish(CommandResult::failed(seen ? QStringLiteral("the tool tip is: ") + *seen
                                                      : QStringLiteral("there is no status item")));
                }
            });
    m_poll.start();
}

void Console::takeScreenshot(const QString &name)
{
    if (name.isEmpty() || m_settings.screenshotTool.isEmpty())
        return finish(CommandResult::failed(QStringLiteral("needs a name and a screenshot tool")));
    const QString file =
        QDir(m_settings.outFolder).filePath(m_settings.picturePrefix + name + QStringLiteral(".png"));
    auto *tool = new QProcess(this);
    tool->setProcessChannelMode(QProcess::ForwardedChannels);
    m_wait = connect(tool, &QProcess::finished, this, [this, tool, file](int code) {
        tool->deleteLater();
        finish(code == 0 ? CommandResult::ok(file) : CommandResult::failed(QStringLiteral("no picture taken")));
    });
    connect(tool, &QProcess::errorOccurred, tool, &QObject::deleteLater);
    finishAfter(ScreenshotLimit, QStringLiteral("the screenshot tool does not end"));
    tool->start(m_settings.screenshotTool, {file});
}

void Console::printHelp()
{
    printLine(QStringLiteral("programs, watching:"));
    for (const auto &[name, command] : m_commands)
        printLine(QStringLiteral("  ") + command.usage);
    printHelpOf({&m_daemon, &m_application});
}

void Console::printHelpOf(QList<Child *> children)
{
    while (!children.isEmpty() && !children.first()->isRunning())
        printLine(children.takeFirst()->name() + QStringLiteral(" is not running"));
    if (children.isEmpty())
        return finish(CommandResult::ok());
    // Each companion knows its own commands; one at a time, for each ends its list with an answer.
    Child &child = *children.takeFirst();
    disconnect(m_wait);
    m_wait = connect(&child, &Child::answered, this, [this, children] { printHelpOf(children); });
    m_deadline.disconnect();
    finishAfter(AnswerLimit, child.name() + QStringLiteral(" does not answer"));
    printLine(child.name() + u':');
    child.writeLine(QStringLiteral("help"));
}
