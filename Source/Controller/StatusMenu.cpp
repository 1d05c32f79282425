#include "Source/Controller/StatusMenu.h"

#include "Platform/DisplayLine.h"
#include "Platform/Limits.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr const char *TagProperty = "tag";

enum class Form {
    Command,
    Tickable, ///< a command whose tick has a place also while it is off
    Holder,   ///< of a submenu
    Line,
};

struct Row {
    Form form = Form::Line;
    std::optional<MenuItem> item; ///< none for a line that no rule speaks of
    int tag = 0;                  ///< 0 for none
    std::optional<MenuAction> action;
};

constexpr Row command(MenuItem item, MenuAction action, int tag = 0)
{
    return {Form::Command, item, tag, action};
}
constexpr Row tickable(MenuItem item, MenuAction action, int tag)
{
    return {Form::Tickable, item, tag, action};
}
constexpr Row holder(MenuItem item, int tag = 0)
{
    return {Form::Holder, item, tag, std::nullopt};
}
constexpr Row label(MenuItem item, int tag = 0)
{
    return {Form::Command, item, tag, std::nullopt};
}
constexpr Row line(std::optional<MenuItem> item = std::nullopt, int tag = 0)
{
    return {Form::Line, item, tag, std::nullopt};
}

// State first, then jobs, sync, the account, help.
constexpr Row topRows[] = {
    label(MenuItem::UserLine),
    line(MenuItem::Separator1),
    command(MenuItem::Status, MenuAction::ShowStatus),
    command(MenuItem::ShowProgress, MenuAction::ShowProgress),
    command(MenuItem::ProgressCompanion, MenuAction::ShowProgress, 335),
    line(),
    holder(MenuItem::Scheduler, 2013),
    command(MenuItem::Logs, MenuAction::ViewLogs),
    line(MenuItem::Separator6),
    command(MenuItem::RemoteManagement, MenuAction::SwitchRemoteManagement, 310),
    tickable(MenuItem::Protection, MenuAction::SwitchProtection, 320),
    line(),
    holder(MenuItem::CloudDrive, 9165),
    line(MenuItem::CloudDriveSeparator),
    command(MenuItem::Start, MenuAction::StartApplication),
    command(MenuItem::WebAccess, MenuAction::AccessWeb, 212),
    command(MenuItem::Upgrade, MenuAction::UpgradeStorage, 100),
    line(MenuItem::UpgradeSeparator, 102),
    line(MenuItem::Spare, 111),
    command(MenuItem::Settings, MenuAction::OpenSettings),
    command(MenuItem::Proxy, MenuAction::OpenProxySettings),
    line(),
    command(MenuItem::Update, MenuAction::CheckForUpdate, 400),
    command(MenuItem::ErrorReport, MenuAction::ReportError),
    command(MenuItem::Help, MenuAction::OpenHelp),
    line(),
    command(MenuItem::Quit, MenuAction::Quit),
};

constexpr Row schedulerRows[] = {
    command(MenuItem::ManageJobs, MenuAction::ManageJobs, 9112013),
    line(),
    command(MenuItem::PauseJob, MenuAction::PauseOrResumeJob, 9122013),
    command(MenuItem::StopJob, MenuAction::StopJob, 9132013),
    line(),
    command(MenuItem::SwitchJobs, MenuAction::SwitchJobs, 9142013),
};

constexpr Row cloudDriveRows[] = {
    label(MenuItem::SyncStatus, 91654),
    line(),
    command(MenuItem::CloudDriveFolder, MenuAction::OpenCloudDriveFolder),
    command(MenuItem::PauseSync, MenuAction::PauseOrResumeSync, 91653),
    holder(MenuItem::RecentlyModified),
};

std::span<const Row> rowsBelow(std::optional<MenuItem> holder)
{
    if (!holder)
        return topRows;
    if (holder == MenuItem::Scheduler)
        return schedulerRows;
    if (holder == MenuItem::CloudDrive)
        return cloudDriveRows;
    return {};
}

/// Names and lines in titles come from outside, in any length and with anything in them.
QString fitTitle(const QString &title)
{
    return DisplayLine::singleLine(DisplayLine::bounded(title, Limits::MenuTitleUnits));
}
} // namespace

StatusMenu::StatusMenu(std::function<void(MenuAction)> clicked) : m_clicked(std::move(clicked))
{
    m_menu.setToolTipsVisible(true);
    build(m_menu, std::nullopt);
    tidySeparators();
    QObject::connect(&m_menu, &QMenu::aboutToShow, &m_menu, [this] {
        if (m_willOpen)
            m_willOpen();
    });
}

void StatusMenu::build(QMenu &menu, std::optional<MenuItem> holder)
{
    for (const Row &row : rowsBelow(holder)) {
        QAction *action = row.form == Form::Line ? menu.addSeparator() : menu.addAction(QString());
        action->setCheckable(row.form == Form::Tickable);
        if (row.tag != 0)
            action->setProperty(TagProperty, row.tag);
        if (!row.item)
            continue;
        entry(*row.item).action = action;
        if (row.form == Form::Holder) {
            auto *submenu = new QMenu(&menu);
            submenu->setToolTipsVisible(true);
            action->setMenu(submenu);
            build(*submenu, row.item);
        } else if (row.action) {
            QObject::connect(action, &QAction::triggered, &m_menu,
                             [this, item = *row.item, what = *row.action] { click(item, what); });
        } else {
            action->setEnabled(false);
        }
    }
}

void StatusMenu::click(MenuItem item, MenuAction action)
{
    // A click toggles a tick by itself; here the tick tells what the files say, and the click only asks.
    entry(item).action->setChecked(entry(item).ticked);
    m_clicked(action);
}

void StatusMenu::apply(const MenuState &state)
{
    followHost();
    for (std::size_t item = 0; item < MenuItemCount; ++item)
        set(m_entries[item], state[static_cast<MenuItem>(item)]);
    tidySeparators();
}

void StatusMenu::apply(MenuItem item, const MenuItemChange &change)
{
    MenuState state;
    state[item] = change;
    apply(state);
}

void StatusMenu::set(Entry &entry, const MenuItemChange &change)
{
    entry.present = change.present.value_or(entry.present);
    if (entry.present) {
        // Most refreshes bring what stands, so texts are made fit only where they differ from the last ones.
        if (change.title && *change.title != entry.givenTitle) {
            entry.givenTitle = *change.title;
            entry.title = fitTitle(entry.givenTitle);
            entry.action->setText(actionText(entry.title));
        }
        if (change.toolTip && *change.toolTip != entry.givenToolTip) {
            entry.givenToolTip = *change.toolTip;
            entry.action->setToolTip(DisplayLine::plainTip(entry.givenToolTip));
        }
        if (change.enabled)
            entry.action->setEnabled(*change.enabled);
        entry.hidden = change.hidden.value_or(entry.hidden);
        entry.ticked = change.ticked.value_or(entry.ticked);
        if (entry.ticked)
            entry.action->setCheckable(true);
        entry.action->setChecked(entry.ticked);
    }
    if (!entry.action->isSeparator()) // those are shown by what stands around them
        entry.action->setVisible(entry.present && !entry.hidden);
}

void StatusMenu::followHost()
{
    // The tray gives the menu its counterpart on the bus when it takes the menu, which is after it was made.
    const bool isOnBus = m_menu.platformMenu() != nullptr;
    if (std::exchange(m_isOnBus, isOnBus) == isOnBus)
        return;
    for (const Entry &entry : m_entries)
        entry.action->setText(actionText(entry.title));
}

QString StatusMenu::actionText(const QString &text) const
{
    return m_isOnBus ? textOnBus(text) : textInWindow(text);
}

QString StatusMenu::textInWindow(QString text)
{
    return text.replace(u'&', u"&&"_s);
}

QString StatusMenu::textOnBus(QString text)
{
    constexpr char16_t WideAmpersand = u'\uff06';
    if (text.contains(u'_')) {
        // A panel that finds a marked key in a title swallows the doubled underscores in it.
        text.replace(u'&', WideAmpersand);
        return text.replace(u'_', u"__"_s);
    }
    // On its way to the bus the first ampersand becomes the mark of a key, which here marks the next one; any
    // later ampersand passes as it is.
    if (const qsizetype first = text.indexOf(u'&'); first >= 0)
        text.insert(first, u'&');
    return text;
}

QAction *StatusMenu::itemWithTag(int tag) const
{
    const auto found = std::ranges::find_if(m_entries, [tag](const Entry &entry) {
        return entry.present && entry.action->property(TagProperty) == tag;
    });
    return found == m_entries.end() ? nullptr : found->action;
}

QAction *StatusMenu::itemWithTitle(const QString &title) const
{
    const auto found = std::ranges::find_if(m_entries, [&](const Entry &entry) {
        return entry.present && !title.isEmpty() && entry.title == title &&
               m_menu.actions().contains(entry.action);
    });
    return found == m_entries.end() ? nullptr : found->action;
}

bool StatusMenu::isWanted(const QAction *separator) const
{
    const auto named = std::ranges::find(m_entries, separator, &Entry::action);
    return named == m_entries.end() || (named->present && !named->hidden);
}

void StatusMenu::tidySeparators() const
{
    tidySeparators(m_menu);
    tidySeparators(*submenu(MenuItem::Scheduler));
    tidySeparators(*submenu(MenuItem::CloudDrive));
}

void StatusMenu::tidySeparators(const QMenu &menu) const
{
    // A separator stands between two items that are seen: never first, last or beside another.
    bool itemAbove = false;
    QAction *waiting = nullptr;
    for (QAction *action : menu.actions()) {
        if (!action->isSeparator()) {
            if (!action->isVisible())
                continue;
            if (waiting)
                std::exchange(waiting, nullptr)->setVisible(true);
            itemAbove = true;
        } else if (itemAbove && !waiting && isWanted(action)) {
            waiting = action;
        } else {
            action->setVisible(false);
        }
    }
    if (waiting)
        waiting->setVisible(false);
}
