#pragma once

#include <QList>
#include <QString>

/// A window as the window manager of the display has it.
struct DesktopWindow {
    quint32 id = 0;
    qint64 pid = 0; ///< of the program that it belongs to; 0 when it does not say
    QString title;
    bool isActive = false; ///< has the keyboard
};

/// Looks at the display the way a task bar does.
namespace WindowProbe
{
/// The managed windows that can be seen, the lowest first; iconified ones are left out. None without a display.
[[nodiscard]] QList<DesktopWindow> shownWindows();
} // namespace WindowProbe
