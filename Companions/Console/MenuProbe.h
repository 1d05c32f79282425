#pragma once

#include "Companions/Console/StatusItemProbe.h"

#include <QList>
#include <QString>

#include <optional>

/// One item of a menu as a panel shows it.
struct MenuEntry {
    enum class Tick { None, Off, On };

    int id = 0;
    int depth = 0; ///< 0 in the menu itself, 1 in a submenu
    bool isSeparator = false;
    bool isEnabled = true;
    Tick tick = Tick::None;
    QString title; ///< without the mark of a key

    /// The title with its marks, not indented: "[x] " or "[ ] " before one that can be ticked, " (off)" behind
    /// one that is greyed, "---" for a separator.
    [[nodiscard]] QString line() const;
};

/// Plays the panel's part for a menu on the bus, interface com.canonical.dbusmenu.
namespace MenuProbe
{
/// A label as it is read on the screen: one underscore marks a key and is not shown, of two one is.
[[nodiscard]] QString titleOfLabel(const QString &label);

/// Opens the menu and reads what it shows, each submenu below its holder; hidden items are left out. Empty when
/// the program does not answer.
[[nodiscard]] std::optional<QList<MenuEntry>> open(const BusAddress &menu);

/// Clicks an item of the menu that was opened last. False when the program does not take the click.
[[nodiscard]] bool click(const BusAddress &menu, int id);
} // namespace MenuProbe
