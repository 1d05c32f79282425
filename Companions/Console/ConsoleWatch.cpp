// The commands that look at the world as its user does: the tool tip and the menu as the desktop's host is told
// them, files, pictures. What is expected may take a while to come, so these poll until it is there.

#include "Companions/Console/Console.h"

#include "Companions/Common/PathTable.h"
#include "Companions/Common/PropertyList.h"

#include <QDeadlineTimer>
#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::seconds ScreenshotLimit{30};
constexpr int SettledPolls = 4; ///< polls with one and the same text before it counts as the new one

QString textOf(const QList<MenuEntry> &entries)
{
    QString text;
    for (const MenuEntry &entry : entries)
        text += u'\n' + QString(entry.depth * 4, u' ') + entry.line();
    return text;
}

CommandResult noMenu()
{
    return CommandResult::failed(u"there is no menu"_s);
}
} // namespace

Wanted wantedOf(const QString &words)
{
    Wanted wanted;
    bool hasLimit = false;
    const int limit = words.section(u' ', -1).toInt(&hasLimit);
    if (hasLimit)
        wanted.limit = std::chrono::seconds(limit);
    wanted.text = (hasLimit ? words.section(u' ', 0, -2) : words).trimmed();
    if (wanted.text.size() > 1 && wanted.text.startsWith(u'"') && wanted.text.endsWith(u'"'))
        wanted.text = wanted.text.mid(1, wanted.text.size() - 2);
    return wanted;
}

void Console::addWatchCommands()
{
    addCommand(u"wait"_s, u"wait SECONDS"_s, [this](const QStringList &words, const QString &) {
        bool isNumber = false;
        const double seconds = words.value(0).toDouble(&isNumber);
        if (!isNumber || seconds < 0)
            return finish(CommandResult::failed(u"needs a number of seconds"_s));
        QTimer::singleShot(static_cast<int>(seconds * 1000), this, [this] { finish(CommandResult::ok()); });
    });
    addCommand(
        u"expect"_s,
        u"expect tooltip TEXT | new tooltip | menu LINE | no menu TITLE | file KEY TEXT | "
        "application | monitor ended | [no] window [TITLE] | [no] window text TEXT | "
        "logs COUNT | log ROW TEXT | no log TEXT | [no] daemon TEXT | job preparing|running|paused|none; each with [SECONDS]"_s,
        [this](const QStringList &words, const QString &rest) { runExpect(words, rest); });
    addCommand(u"show"_s, u"show tooltip|menu             as the desktop's host is told it"_s,
               [this](const QStringList &words, const QString &) { show(words.value(0)); });
    addCommand(u"click"_s, u"click TITLE [| TITLE...]      on an item of the menu, as the host passes it on"_s,
               [this](const QStringList &, const QString &rest) { clickItem(rest); });
    addCommand(u"screenshot"_s, u"screenshot NAME               of the panel and the tool tip"_s,
               [this](const QStringList &words, const QString &) { takePicture({u"tip"_s}, words.value(0)); });
    addCommand(u"picture"_s,
               u"picture menu|window NAME      of the open menu, of the monitor's topmost window"_s,
               [this](const QStringList &words, const QString &) {
                   if (words.value(0) == "menu"_L1)
                       takePicture({u"menu"_s}, words.value(1));
                   else if (words.value(0) == "window"_L1)
                       pictureWindow(words.value(1));
                   else
                       finish(CommandResult::failed(u"a picture of what?"_s));
               });
    addCommand(u"help"_s, u"help"_s, [this](const QStringList &, const QString &) { printHelp(); });
    addCommand(u"quit"_s, u"quit"_s, [this](const QStringList &, const QString &) {
        m_queue.clear();
        m_endAfterQueue = true;
        finish(CommandResult::ok());
    });
}

void Console::runExpect(const QStringList &words, const QString &rest)
{
    using Handler = void (Console::*)(const QString &text);
    static const struct {
        QStringList words;
        Handler handler;
    } expectations[] = {
        {{u"tooltip"_s}, &Console::expectToolTip},
        {{u"new"_s, u"tooltip"_s}, &Console::expectNewToolTip},
        {{u"menu"_s}, &Console::expectMenu},
        {{u"no"_s, u"menu"_s}, &Console::expectNoMenu},
        {{u"file"_s}, &Console::expectFile},
        {{u"application"_s}, &Console::expectApplication},
        {{u"monitor"_s, u"ended"_s}, &Console::expectMonitorEnded},
        {{u"window"_s, u"text"_s}, &Console::expectWindowText},
        {{u"window"_s}, &Console::expectWindow},
        {{u"no"_s, u"window"_s, u"text"_s}, &Console::expectNoWindowText},
        {{u"no"_s, u"window"_s}, &Console::expectNoWindow},
        {{u"daemon"_s}, &Console::expectDaemonLine},
        {{u"no"_s, u"daemon"_s}, &Console::expectNoDaemonLine},
        {{u"job"_s}, &Console::expectJob},
        {{u"logs"_s}, &Console::expectLogs},
        {{u"log"_s}, &Console::expectLog},
        {{u"no"_s, u"log"_s}, &Console::expectNoLog},
    };
    for (const auto &expectation : expectations) {
        const auto count = expectation.words.size();
        if (words.mid(0, count) == expectation.words)
            return (this->*expectation.handler)(
                rest.section(u' ', static_cast<int>(count), -1, QString::SectionSkipEmpty).trimmed());
    }
    finish(CommandResult::failed(u"what should be expected?"_s));
}

void Console::watch(std::chrono::seconds limit, std::function<CommandResult()> look)
{
    connect(&m_poll, &QTimer::timeout, this,
            [this, look = std::move(look), deadline = QDeadlineTimer(limit)]() mutable {
                const CommandResult seen = look();
                if (seen.done || deadline.hasExpired())
                    finish(seen);
            });
    m_poll.start();
}

void Console::expectToolTip(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    if (wanted.text.isEmpty())
        return finish(CommandResult::failed(u"needs a text"_s));
    watchToolTip(wanted.limit, [wanted](const QString &seen) { return seen.contains(wanted.text); });
}

void Console::expectNewToolTip(const QString &text)
{
    watchToolTip(wantedOf(text).limit,
                 [before = m_lastToolTip, candidate = QString(), polls = 0](const QString &seen) mutable {
                     polls = seen == candidate ? polls + 1 : 0;
                     candidate = seen;
                     // The name alone is what stands there between two states.
                     return seen != before && seen.contains(u'\n') && polls >= SettledPolls;
                 });
}

void Console::watchToolTip(std::chrono::seconds limit, std::function<bool(const QString &)> isMet)
{
    watch(limit, [this, isMet = std::move(isMet)]() mutable {
        const auto seen = m_probe.toolTip();
        if (!seen)
            return CommandResult::failed(u"there is no status item"_s);
        if (!isMet(*seen))
            return CommandResult::failed(u"the tool tip is: "_s + *seen);
        m_lastToolTip = *seen;
        return CommandResult::ok(*seen);
    });
}

std::optional<QList<MenuEntry>> Console::openMenu() const
{
    const auto menu = m_probe.menu();
    return menu ? MenuProbe::open(*menu) : std::nullopt;
}

void Console::expectMenu(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        const auto entries = openMenu();
        if (!entries)
            return noMenu();
        const bool isThere = std::any_of(entries->begin(), entries->end(), [&wanted](const MenuEntry &entry) {
            return entry.line() == wanted.text;
        });
        return isThere ? CommandResult::ok() : CommandResult::failed(u"the menu is:"_s + textOf(*entries));
    });
}

void Console::expectNoMenu(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    watch(wanted.limit, [this, wanted] {
        const auto entries = openMenu();
        if (!entries)
            return noMenu();
        const bool isThere = std::any_of(entries->begin(), entries->end(), [&wanted](const MenuEntry &entry) {
            return entry.title == wanted.text;
        });
        return isThere ? CommandResult::failed(u"the menu is:"_s + textOf(*entries)) : CommandResult::ok();
    });
}

void Console::expectFile(const QString &text)
{
    const Wanted wanted = wantedOf(text.section(u' ', 1));
    const auto table = PathTable::load(m_settings.table);
    const QString path = table ? table->path(text.section(u' ', 0, 0)) : QString();
    if (path.isEmpty())
        return finish(CommandResult::failed(u"the path table has no such file"_s));
    watch(wanted.limit, [path, wanted] {
        const QString content = readTextFile(path);
        return content == wanted.text ? CommandResult::ok()
                                      : CommandResult::failed(path + u" says: "_s + content);
    });
}

void Console::show(const QString &what)
{
    if (what == "progress"_L1) // the application's user has a button for it
        return forward(m_application, u"show progress"_s);
    if (what == "menu"_L1) {
        const auto entries = openMenu();
        return finish(entries ? CommandResult::ok(textOf(*entries)) : noMenu());
    }
    const auto text = m_probe.toolTip();
    finish(text ? CommandResult::ok(*text) : CommandResult::failed(u"there is no status item"_s));
}

void Console::clickItem(const QString &title)
{
    QStringList titles; // the same item in several languages
    for (const QString &one : title.split(u'|'))
        titles.append(one.trimmed());
    watch(Wanted::DefaultLimit, [this, titles] {
        const auto menu = m_probe.menu();
        const auto entries = menu ? MenuProbe::open(*menu) : std::nullopt;
        if (!entries)
            return noMenu();
        const auto found = std::find_if(entries->begin(), entries->end(), [&titles](const MenuEntry &entry) {
            return titles.contains(entry.title);
        });
        if (found == entries->end() || found->isSeparator || !found->isEnabled)
            return CommandResult::failed(u"no such item to click; the menu is:"_s + textOf(*entries));
        return MenuProbe::click(*menu, found->id) ? CommandResult::ok()
                                                  : CommandResult::failed(u"the click is not taken"_s);
    });
}

void Console::takePicture(const QStringList &what, const QString &name)
{
    if (name.isEmpty() || m_settings.screenshotTool.isEmpty())
        return finish(CommandResult::failed(u"needs a name and a screenshot tool"_s));
    const QString file = QDir(m_settings.outFolder).filePath(m_settings.picturePrefix + name + u".png"_s);
    auto *tool = new QProcess(this);
    tool->setProcessChannelMode(QProcess::ForwardedChannels);
    m_wait = connect(tool, &QProcess::finished, this, [this, tool, file](int code) {
        tool->deleteLater();
        finish(code == 0 ? CommandResult::ok(file) : CommandResult::failed(u"no picture taken"_s));
    });
    connect(tool, &QProcess::errorOccurred, tool, &QObject::deleteLater);
    finishAfter(ScreenshotLimit, u"the screenshot tool does not end"_s);
    tool->start(m_settings.screenshotTool, QStringList{file} + what);
}
