#pragma once

#include "Source/Controller/MenuItems.h"

#include <QAction>
#include <QMenu>

#include <array>
#include <functional>
#include <optional>

/// The menu of the status item: its items, their order and grouping. It knows no rule; what the items say and
/// whether they are seen comes in by apply(). Main thread only.
///
/// Items are hidden rather than taken out, since a panel that shows the menu over the bus takes changed
/// properties of items at once, but fetches a changed list of items only after the menu stands on the screen.
class StatusMenu
{
public:
    /// `clicked` is called when the user picks an item, with the item's look as it was before the click.
    explicit StatusMenu(std::function<void(MenuAction)> clicked);
    StatusMenu(const StatusMenu &) = delete;

    /// To be the context menu of the status item.
    [[nodiscard]] QMenu &menu() { return m_menu; }
    /// Called whenever the menu is about to show, by a click here or by the panel over the bus; what is applied
    /// inside is what the user sees.
    void setWillOpen(std::function<void()> willOpen) { m_willOpen = std::move(willOpen); }

    /// Brings the items in line. Nothing is drawn or sent for an item that stays as it is.
    void apply(const MenuState &state);
    void apply(MenuItem item, const MenuItemChange &change);

    /// What an item shows; the title as it was given, without marks for the desktop.
    [[nodiscard]] QString title(MenuItem item) const { return entry(item).title; }
    [[nodiscard]] bool isEnabled(MenuItem item) const { return action(item)->isEnabled(); }
    /// Whether the item is hidden by itself; an item with a hidden parent need not be.
    [[nodiscard]] bool isHidden(MenuItem item) const { return entry(item).hidden || !entry(item).present; }
    [[nodiscard]] bool isTicked(MenuItem item) const { return entry(item).ticked; }

    /// The action behind an item, whether or not it is seen. Titles, ticks and hiding go by apply() only.
    [[nodiscard]] QAction *action(MenuItem item) const { return entry(item).action; }
    /// The item with that number, here or in a submenu; null for none, also while the item is taken out.
    [[nodiscard]] QAction *itemWithTag(int tag) const;
    /// The first item of the top level with that title; null for none.
    [[nodiscard]] QAction *itemWithTitle(const QString &title) const;
    /// The submenu of Scheduler, CloudDrive or RecentlyModified; null for any other item.
    [[nodiscard]] QMenu *submenu(MenuItem item) const { return action(item)->menu(); }

    /// `text` as an action's text, for an item that is added from elsewhere: shown to the letter in this menu.
    [[nodiscard]] QString actionText(const QString &text) const;
    /// The same for a menu of this program's own, and for one that the panel draws.
    /// Source of the marks on the bus: the property "label" of com.canonical.dbusmenu.
    [[nodiscard]] static QString textInWindow(QString text);
    [[nodiscard]] static QString textOnBus(QString text);

private:
    struct Entry {
        QAction *action = nullptr;
        QString title;
        QString givenTitle; ///< of which `title` was made
        QString givenToolTip;
        bool present = true;
        bool hidden = false;
        bool ticked = false;
    };

    void build(QMenu &menu, std::optional<MenuItem> holder);
    void click(MenuItem item, MenuAction action);
    void set(Entry &entry, const MenuItemChange &change);
    void followHost();
    void tidySeparators(const QMenu &menu) const;
    void tidySeparators() const;

    [[nodiscard]] Entry &entry(MenuItem item) { return m_entries[static_cast<std::size_t>(item)]; }
    [[nodiscard]] const Entry &entry(MenuItem item) const { return m_entries[static_cast<std::size_t>(item)]; }
    [[nodiscard]] bool isWanted(const QAction *separator) const;

    std::function<void(MenuAction)> m_clicked;
    std::function<void()> m_willOpen;
    std::array<Entry, MenuItemCount> m_entries;
    bool m_isOnBus = false; ///< shown by the panel, which draws titles by other rules than this program
    QMenu m_menu;
};
