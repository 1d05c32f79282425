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
        bottomPanel{screen, {0, 0, 1600, 860}};
    const ScreenArea leftPanel{screen, {30, 0, 1570, 900}}, rightPanel{screen, {0, 0, 1540, 900}};
    const std::tuple<const char *, QRect, ScreenArea, QPoint, Side, std::optional<int>> rows[] = {
        {"top panel, middle", {800, 3, 24, 24}, topPanel, {642, 30}, Below, 170},
        {"top panel, right end", {1570, 3, 24, 24}, topPanel, {1252, 30}, Below, {}},
        {"top panel, near the right end", {1500, 3, 24, 24}, topPanel, {1252, 30}, Below, 260},
        {"top panel, left end", {60, 3, 24, 24}, topPanel, {8, 30}, Below, 64},
        {"bottom panel", {800, 868, 24, 24}, bottomPanel, {642, 760}, Above, 170},
        {"left panel", {3, 400, 24, 24}, leftPanel, {38, 424}, Below, {}},
        {"left panel, lower end", {3, 870, 24, 24}, leftPanel, {38, 770}, Above, {}},
        {"second screen", {2000, 0, 24, 24}, {second, second}, {1842, 24}, Below, 170},
        {"unknown, top panel", {}, topPanel, {1252, 38}, Below, {}},
        {"unknown, bottom panel", {}, bottomPanel, {1252, 752}, Above, {}},
        {"unknown, left panel", {}, leftPanel, {38, 792}, Above, {}},
        {"unknown, right panel", {}, rightPanel, {1192, 792}, Above, {}},
        {"unknown, no panel", {}, bare, {1252, 8}, Below, {}},
        {"off the screen", {-90, -90, 24, 24}, bare, {1252, 8}, Below, {}},
    };
    for (const auto &[name, item, area, topLeft, side, arrow] : rows) {
        SCOPED_TRACE(name);
        const PopoverPlace place = popoverPlace({340, 100}, item, area);
        EXPECT_EQ(place.topLeft, topLeft) << place.topLeft.x() << ", " << place.topLeft.y();
        EXPECT_EQ(place.side, side);
        EXPECT_EQ(place.arrowX, arrow);
    }
}

TEST(PopoverPlace, ATextHigherThanTheScreenBeginsOnIt)
{
    const QRect screen(0, 0, 800, 600);
    EXPECT_EQ(popoverPlace({340, 900}, Item, {screen, screen}).topLeft.y(), 0);
    EXPECT_EQ(popoverPlace({340, 900}, {}, {screen, screen}).topLeft.y(), 8);
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
    EXPECT_EQ(label->textInteractionFlags() & (Qt::TextSelectableByMouse | Qt::TextEditable), 0);
    EXPECT_EQ(label->alignment(), Qt::AlignCenter);
    EXPECT_EQ(label->width(), 315);
    EXPECT_LT(label->palette().window().color().lightness(), 128) << "the desktop is dark";
}

TEST(Popover, IsAsHighAsItsText)
{
    ManualClock clock(Noon);
    Popover popover(clock, [] { return false; });
    int lineHeight = 0;
    int chrome = 0;
    const std::tuple<const char *, int> rows[] = {{"one line", 1}, {"three lines", 3}, {"far too many", 5000}};
    for (const auto &[name, lines] : rows) {
        SCOPED_TRACE(name);
        popover.show(QStringList(lines, u"line"_s).join(u'\n'), Item);
        const QWidget *window = shownPopover();
        const int height = window->findChild<QLabel *>()->height();
        if (lines == 1) {
            lineHeight = height;
            chrome = window->height() - height;
        }
        EXPECT_EQ(height, std::min(lines * lineHeight, 10'000));
        EXPECT_EQ(window->height() - height, chrome);
    }
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
