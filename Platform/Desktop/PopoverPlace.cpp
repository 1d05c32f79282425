#include "Platform/Desktop/PopoverPlace.h"

#include <algorithm>

namespace
{
constexpr int Margin = 8;       ///< to the edges of the screen
constexpr int ArrowMargin = 20; ///< of the arrow's tip to the popover's corners

PopoverPlace besideItem(QSize popover, const QRect &item, const QRect &room)
{
    const int lowest = room.y() + room.height() - popover.height();
    const int rightmost = room.x() + room.width() - popover.width() - Margin;
    const int middle = item.x() + item.width() / 2;

    PopoverPlace place;
    int y = item.y() + item.height();
    if (y > lowest) {
        place.side = PopoverPlace::Side::Above;
        y = item.y() - popover.height();
    }
    const int x = std::max(std::min(middle - popover.width() / 2, rightmost), room.x() + Margin);
    place.topLeft = {x, std::max(std::min(y, lowest), room.y())};
    // At a panel that stands upright the tip would point past the item.
    const int tip = middle - x;
    const int top = place.topLeft.y();
    const bool isClear = top >= item.y() + item.height() || top + popover.height() <= item.y();
    if (isClear && tip >= ArrowMargin && tip <= popover.width() - ArrowMargin)
        place.arrowX = tip;
    return place;
}

PopoverPlace atPanelsEnd(QSize popover, const ScreenArea &screen)
{
    const QRect &room = screen.available;
    const int above = room.y() - screen.whole.y();
    const int below = screen.whole.y() + screen.whole.height() - room.y() - room.height();
    const int left = room.x() - screen.whole.x();
    const int right = screen.whole.x() + screen.whole.width() - room.x() - room.width();
    // An upright panel has its items at the lower end.
    const bool atBottom = below > above || (above == 0 && std::max(left, right) > 0);
    const bool atLeft = left > std::max({right, above, below});

    PopoverPlace place;
    const int x = atLeft ? room.x() + Margin : room.x() + room.width() - popover.width() - Margin;
    const int y = atBottom ? room.y() + room.height() - popover.height() - Margin : room.y() + Margin;
    place.side = atBottom ? PopoverPlace::Side::Above : PopoverPlace::Side::Below;
    place.topLeft = {std::max(x, room.x()), std::max(y, room.y())};
    return place;
}
} // namespace

PopoverPlace popoverPlace(QSize popover, const QRect &item, const ScreenArea &screen)
{
    if (!item.isEmpty() && screen.whole.intersects(item))
        return besideItem(popover, item, screen.available);
    return atPanelsEnd(popover, screen);
}
