#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// Where a popover stands and how it points.
struct PopoverPlace {
    enum class Side { Below, Above }; ///< of the item

    QPoint topLeft;
    Side side = Side::Below;
    std::optional<int>
        arrowX; ///< of the arrow's tip, from the popover's left; none where nothing is pointed at
};

/// A screen: the whole of it, and what its panels leave.
struct ScreenArea {
    QRect whole;
    QRect available;
};

/// Centred at the item's lower edge, or above it where that would leave the screen, moved sideways as far as
/// the screen asks for. Where the item's place isn't known (an empty rectangle, or one off this screen), the
/// end of the panel where the items of that kind stand: the right-hand corner, at the edge that a panel takes,
/// else at the top.
[[nodiscard]] PopoverPlace popoverPlace(QSize popover, const QRect &item, const ScreenArea &screen);
