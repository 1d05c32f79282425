// The commands that look at the monitor's windows as the display shows them, and use the keyboard on them; and
// what is expected of the backup daemon meanwhile.

#include "Companions/Console/Console.h"
#include "Companions/Console/TextProbe.h"
#include "Companions/Console/WindowProbe.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <algorithm>
#include <memory>

namespace
{
/// As they are listed where another one was expected.
QString titlesOf(const QList<DesktopWindow> &windows)
{
    QStringList titles;
    for (const DesktopWindow &window : windows)
        titles.append(u'"' + window.title + u'"');
    return titles.isEmpty() ? QStringLiteral("none") : titles.join(QStringLiteral(", "));
}

bool hasTitle(const QList<DesktopWindow> &windows, const QString &title)
{
    return std::any_of(windows.begin(), windows.end(),
                       [&title](const DesktopWindow &window) { return window.title.contains(title); });
}

bool holds(const QStringList &texts, const QString &part)
{
    return std::any_of(texts.begin(), texts.end(),
                       [&part](const QString &text) { return text.contains(part); });
}
} // namespace

void Console::addWindowCommands()
{
    addCommand(
        QStringLiteral("key"),
        QStringLiteral("key KEYS                      as typed into a window of the monitor: Return, Tab"),
        [this](const QStringList &words, const QString &) { typeKeys(words); });
    addCommand(QStringLiteral("press"),
               QStringLiteral("press NAME                    a button of its windows, as a screen reader does"),
               [this](const QStringList &, const QString &rest) {
                   watch(Wanted::DefaultLimit, [this, rest] {
                       return TextProbe::press(childrenRunning(m_settings.monitor), rest)
                                  ? CommandResult::ok()
                                  : CommandResult::failed(QStringLiteral("nothing of that name to press"));
                   });
               });
}

QList<DesktopWindow> Console::monitorWindows() const
{
    const QList<qint64> monitors = childrenRunning(m_settings.monitor);
    QList<DesktopWindow> windows = WindowProbe::shownWindows();
    windows.removeIf([&monitors](const DesktopWindow &window) { return !monitors.contains(window.pid); });
    return windows;
}

void Console::expectWindow(const QString &text)
{
    watch(wantedOf(text).limit, [this, title = wantedOf(text).text] {
        const auto windows = monitorWindows();
        return hasTitle(windows, title)
                   ? CommandResult::ok()
                   : CommandResult::failed(QStringLiteral("the windows are: ") + titlesOf(windows));
    });
}

void Console::expectNoWindow(const QString &text)
{
    watch(wantedOf(text).limit, [this, title = wantedOf(text).text] {
        const auto windows = monitorWindows();
        return hasTitle(windows, title)
                   ? CommandResult::failed(QStringLiteral("the windows are: ") + titlesOf(windows))
                   : CommandResult::ok();
    });
}

void Console::expectWindowText(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        const QStringList texts = windowTexts();
        return holds(texts, wanted.text)
                   ? CommandResult::ok()
                   : CommandResult::failed(QStringLiteral("the windows say:\n") + texts.join(u'\n'));
    });
}

void Console::expectNoWindowText(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        const QStringList texts = windowTexts();
        const bool isRead =
            !texts.isEmpty() || monitorWindows().isEmpty(); // a window that is dumb proves nothing
        return isRead && !holds(texts, wanted.text)
                   ? CommandResult::ok()
                   : CommandResult::failed(QStringLiteral("the windows say:\n") + texts.join(u'\n'));
    });
}

QStringList Console::windowTexts() const
{
    return TextProbe::texts(childrenRunning(m_settings.monitor));
}

void Console::typeKeys(const QStringList &keys)
{
    const bool areKeys = !keys.isEmpty() && std::none_of(keys.begin(), keys.end(), [](const QString &key) {
        return key.startsWith(u'-');
    });
    if (!areKeys)
        return finish(CommandResult::failed(QStringLiteral("needs names of keys")));
    watch(Wanted::DefaultLimit, [this, keys] {
        const auto windows = monitorWindows();
        const bool isActive = std::any_of(windows.begin(), windows.end(),
                                          [](const DesktopWindow &window) { return window.isActive; });
        if (!isActive) // somebody else's window must not get them
            return CommandResult::failed(QStringLiteral("no window of the monitor has the keyboard"));
        return QProcess::execute(QStringLiteral("xdotool"), QStringList{QStringLiteral("key")} + keys) == 0
                   ? CommandResult::ok()
                   : CommandResult::failed(QStringLiteral("the keys cannot be typed"));
    });
}

void Console::pictureWindow(const QString &name)
{
    const auto windows = monitorWindows();
    if (windows.isEmpty())
        return finish(CommandResult::failed(QStringLiteral("the monitor shows no window")));
    takePicture({QStringLiteral("window"), QString::number(windows.last().id)}, name);
}

void Console::expectDaemonLine(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        return m_daemonLines.take(wanted.text)
                   ? CommandResult::ok()
                   : CommandResult::failed(QStringLiteral("since the last one it has said:\n") +
                                           m_daemonLines.left().join(u'\n'));
    });
}

void Console::expectNoDaemonLine(const QString &text)
{
    const QString wanted = wantedOf(text).text;
    finish(m_daemonLines.holds(wanted)
               ? CommandResult::failed(QStringLiteral("it has said:\n") + m_daemonLines.left().join(u'\n'))
               : CommandResult::ok());
}

void Console::expectJob(const QString &text)
{
    if (!m_daemon.isRunning())
        return finish(CommandResult::failed(QStringLiteral("daemon is not running")));
    // A question goes out when the one before is answered: an answer that is left over would end the next
    // command.
    auto asked = std::make_shared<bool>(false);
    m_wait = connect(&m_daemon, &Child::answered, this,
                     [this, asked, wanted = wantedOf(text),
                      deadline = QDeadlineTimer(wantedOf(text).limit)](bool, const QString &state) {
                         *asked = false;
                         if (state == wanted.text)
                             finish(CommandResult::ok());
                         else if (deadline.hasExpired())
                             finish(CommandResult::failed(QStringLiteral("the job is: ") + state));
                     });
    connect(&m_poll, &QTimer::timeout, this, [this, asked] {
        if (!m_daemon.isRunning())
            return finish(CommandResult::failed(QStringLiteral("daemon is not running")));
        if (!std::exchange(*asked, true))
            m_daemon.writeLine(QStringLiteral("state"));
    });
    m_poll.start();
}
