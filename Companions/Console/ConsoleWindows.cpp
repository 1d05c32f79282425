// The commands that look at the monitor's windows as the display shows them, and use the keyboard on them; and
// what is expected of the backup daemon meanwhile.

#include "Companions/Console/Console.h"
#include "Companions/Console/TextProbe.h"
#include "Companions/Console/WindowProbe.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
/// As they are listed where another one was expected.
QString titlesOf(const QList<DesktopWindow> &windows)
{
    QStringList titles;
    for (const DesktopWindow &window : windows)
        titles.append(u'"' + window.title + u'"');
    return titles.isEmpty() ? u"none"_s : titles.join(u", "_s);
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
    addCommand(u"key"_s, u"key KEYS                      as typed into a window of the monitor: Return, Tab"_s,
               [this](const QStringList &words, const QString &) { typeKeys(words); });
    addCommand(
        u"press"_s,
        u"press NAME                    a button, link or column title of its windows, as a screen reader "
        "does; press log delete ROW    the button of a row of logs"_s,
        [this](const QStringList &words, const QString &rest) {
            if (words.size() == 3 && words.mid(0, 2) == QStringList{u"log"_s, u"delete"_s})
                return pressLogDelete(words.last());
            watch(Wanted::DefaultLimit, [this, rest] {
                return TextProbe::press(childrenRunning(m_settings.monitor), rest)
                           ? CommandResult::ok()
                           : CommandResult::failed(u"nothing of that name to press"_s);
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
        return hasTitle(windows, title) ? CommandResult::ok()
                                        : CommandResult::failed(u"the windows are: "_s + titlesOf(windows));
    });
}

void Console::expectNoWindow(const QString &text)
{
    watch(wantedOf(text).limit, [this, title = wantedOf(text).text] {
        const auto windows = monitorWindows();
        return hasTitle(windows, title) ? CommandResult::failed(u"the windows are: "_s + titlesOf(windows))
                                        : CommandResult::ok();
    });
}

void Console::expectWindowText(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        const QStringList texts = windowTexts();
        return holds(texts, wanted.text) ? CommandResult::ok()
                                         : CommandResult::failed(u"the windows say:\n"_s + texts.join(u'\n'));
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
                   : CommandResult::failed(u"the windows say:\n"_s + texts.join(u'\n'));
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
        return finish(CommandResult::failed(u"needs names of keys"_s));
    watch(Wanted::DefaultLimit, [this, keys] { return typed(keys); });
}

CommandResult Console::typed(const QStringList &keys) const
{
    const auto windows = monitorWindows();
    const bool isActive = std::any_of(windows.begin(), windows.end(),
                                      [](const DesktopWindow &window) { return window.isActive; });
    if (!isActive) // somebody else's window must not get them
        return CommandResult::failed(u"no window of the monitor has the keyboard"_s);
    return QProcess::execute(u"xdotool"_s, QStringList{u"key"_s} + keys) == 0
               ? CommandResult::ok()
               : CommandResult::failed(u"the keys cannot be typed"_s);
}

void Console::pictureWindow(const QString &name)
{
    const auto windows = monitorWindows();
    if (windows.isEmpty())
        return finish(CommandResult::failed(u"the monitor shows no window"_s));
    takePicture({u"window"_s, QString::number(windows.last().id)}, name);
}

void Console::expectDaemonLine(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        return m_daemonLines.take(wanted.text) ? CommandResult::ok()
                                               : CommandResult::failed(u"since the last one it has said:\n"_s +
                                                                       m_daemonLines.left().join(u'\n'));
    });
}

void Console::expectNoDaemonLine(const QString &text)
{
    const QString wanted = wantedOf(text).text;
    finish(m_daemonLines.holds(wanted)
               ? CommandResult::failed(u"it has said:\n"_s + m_daemonLines.left().join(u'\n'))
               : CommandResult::ok());
}

void Console::expectJob(const QString &text)
{
    if (!m_daemon.isRunning())
        return finish(CommandResult::failed(u"daemon is not running"_s));
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
                             finish(CommandResult::failed(u"the job is: "_s + state));
                     });
    connect(&m_poll, &QTimer::timeout, this, [this, asked] {
        if (!m_daemon.isRunning())
            return finish(CommandResult::failed(u"daemon is not running"_s));
        if (!std::exchange(*asked, true))
            m_daemon.writeLine(u"state"_s);
    });
    m_poll.start();
}
