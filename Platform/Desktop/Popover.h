#pragma once

#include "Platform/Clock.h"

#include <QRect>
#include <QString>

#include <functional>
#include <memory>

/// A text at the status item, for a moment. It takes no input focus, and there is one at a time: showing
/// another closes it. Main thread only.
class Popover
{
public:
    static constexpr Clock::Duration TimeOnScreen{10'000};
    static constexpr int TextWidth = 315;
    static constexpr int MaxTextHeight = 10'000;

    /// `isDark` says at each showing how the desktop looks. The clock outlives the popover.
    Popover(Clock &clock, std::function<bool()> isDark);
    ~Popover();

    /// Shows the text, plain and centred, at the lower edge of the item; `itemGeometry` is the item's place on
    /// the desktop, empty where the panel doesn't tell it. A click or the end of TimeOnScreen closes it.
    void show(const QString &text, const QRect &itemGeometry);
    void close();
    [[nodiscard]] bool isShown() const;

private:
    class Window;

    Clock &m_clock;
    std::function<bool()> m_isDark;
    std::unique_ptr<Window> m_window;
    std::unique_ptr<Clock::Timer> m_end;
};
