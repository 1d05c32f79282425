#include "Platform/Desktop/Popover.h"
#include "Platform/Desktop/PopoverPlace.h"
#include "Tests/Support/PrintQt.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Side = PopoverPlace::Side;

namespace
{
const QDateTime Noon(QDate(2026, 3, 2), QTime(12, 0));
const QRect Item(400, 0, 24, 24);

QWidget *shownPopover()
{
    QWidget *found = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowType() == Qt::ToolTip) {
            EXPECT_EQ(found, nullptr) << "one at a time";
            found = widget;
        }
    }
    return found;
}
} // namespace

TEST(PopoverPlace, BesideTheItemAndInsideTheScreen)
{
    using enum Side;
    const QRect screen(0, 0, 1600, 900), second(1600, 0, 1000, 800);
    const ScreenArea bare{screen, screen}, topPanel{screen, {0, 30, 1600, 870}},
        bottomPanel{screen, {0, 0, 1600, 860}}, leftPanel{screen, {30, 0, 1570, 900}};
    const std::tuple<const char *, QRect, ScreenArea, QPoint, Side, std::optional<int>> rows[] = {
        {"top panel, middle", {800, 3, 24, 24}, topPanel, {642, 30}, Below, 170},
        {"top panel, right end", {1570, 3, 24, 24}, topPanel, {1252, 30}, Below, {}},
        {"top panel, near the right end", {1500, 3, 24, 24}, topPanel, {1252, 30}, Below, 260},
        {"top panel, left end", {60, 3, 24, 24}, topPanel, {8, 30}, Below, 64},
        {"bottom panel", {800, 868, 24, 24}, bottomPanel, {642, 760}, Above, 170},
        {"left panel", {3, 400, 24, 24}, leftPanel, {38, 424}, Below, {}},
        {"left panel, lower end", {3, 870, 24, 24}, leftPanel, {38, 770}, Above, {}},
        {"second screen", {2000, 0, 24, 24}, {second, second}, {1842, 24}, Below, 170},
        {"unknown, bottom panel", {}, bottomPanel, {1252, 752}, Above, {}},
        {"unknown, left panel", {}, leftPanel, {38, 792}, Above, {}},
        {"unknown, no panel", {}, bare, {1252, 8}, Below, {}},
        {"off the screen", {-90, -90, 24, 24}, bare, {1252, 8}, Below, {}},
    };
    for (const auto &[name, item, area, topLeft, side, arrow] : rows) {
        const PopoverPlace place = popoverPlace({340, 100}, item, area);
        EXPECT_TRUE(place.topLeft == topLeft && place.side == side && place.arrowX == arrow)
            << name << ": " << place.topLeft.x() << ", " << place.topLeft.y();
    }
    EXPECT_EQ(popoverPlace({340, 1100}, Item, bare).topLeft.y(), 0) << "higher than the screen";
}

TEST(Popover, ShowsPlainTextWithoutTakingTheFocus)
{
    ManualClock clock(Noon);
    Popover popover(clock, [] { return true; });
    popover.show(u"<b>Corvane</b> is up-to-date"_s, Item);
    const QWidget *window = shownPopover();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(window->windowFlags() & Qt::WindowDoesNotAcceptFocus);
    const auto *label = window->findChild<QLabel *>();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), u"<b>Corvane</b> is up-to-date"_s);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(label->width(), 315);
    EXPECT_LT(label->palette().window().color().lightness(), 128) << "the desktop is dark";
}

TEST(Popover, IsAsHighAsItsText)
{
    ManualClock clock(Noon);
    Popover popover(clock, [] { return false; });
    const auto heightOf = [&](int lines) {
        popover.show(QStringList(lines, u"line"_s).join(u'\n'), Item);
        return shownPopover()->findChild<QLabel *>()->height();
    };
    EXPECT_EQ(heightOf(3), 3 * heightOf(1));
    EXPECT_EQ(heightOf(5000), 10'000);
}

TEST(Popover, ClosesAfterTenSecondsOrByAClick)
{
    ManualClock clock(Noon);
    Popover popover(clock, [] { return false; });
    popover.show(u"first"_s, Item);
    clock.advance(9'999ms);
    EXPECT_TRUE(popover.isShown());
    clock.advance(1ms);
    EXPECT_FALSE(popover.isShown());
    EXPECT_EQ(shownPopover(), nullptr);

    popover.show(u"second"_s, QRect());
    clock.advance(6s);
    popover.show(u"third"_s, QRect());
    clock.advance(6s);
    ASSERT_TRUE(popover.isShown()) << "the end of the one before doesn't close it";
    EXPECT_EQ(shownPopover()->findChild<QLabel *>()->text(), u"third"_s);
    QTest::mouseClick(shownPopover(), Qt::LeftButton);
    EXPECT_FALSE(popover.isShown());
    EXPECT_EQ(clock.runningTimers(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
