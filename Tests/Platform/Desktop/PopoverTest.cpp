#include "Platform/Desktop/Popover.h"
#include "Platform/Desktop/PopoverPlace.h"
#include "Tests/Support/PrintQt.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

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
    const QRect screen(0, 0, 1600, 900);
    const QRect underTopPanel(0, 30, 1600, 870);
    const QRect overBottomPanel(0, 0, 1600, 860);
    const QRect secondScreen(1600, 0, 1000, 800);
    const struct {
        const char *name;
        QRect item;
        ScreenArea area;
        QPoint place;
        Side side;
        std::optional<int> arrow;
    } rows[] = {
        {"top panel, middle", {800, 3, 24, 24}, {screen, underTopPanel}, {642, 30}, Side::Below, 170},
        {"top panel, right end",
         {1570, 3, 24, 24},
         {screen, underTopPanel},
         {1252, 30},
         Side::Below,
         std::nullopt},
        {"top panel, near the right end",
         {1500, 3, 24, 24},
         {screen, underTopPanel},
         {1252, 30},
         Side::Below,
         260},
        {"top panel, left end", {60, 3, 24, 24}, {screen, underTopPanel}, {8, 30}, Side::Below, 64},
        {"bottom panel", {800, 868, 24, 24}, {screen, overBottomPanel}, {642, 760}, Side::Above, 170},
        {"left panel", {3, 400, 24, 24}, {screen, {30, 0, 1570, 900}}, {38, 424}, Side::Below, std::nullopt},
        {"left panel, lower end",
         {3, 870, 24, 24},
         {screen, {30, 0, 1570, 900}},
         {38, 770},
         Side::Above,
         std::nullopt},
        {"second screen", {2000, 0, 24, 24}, {secondScreen, secondScreen}, {1842, 24}, Side::Below, 170},
        {"unknown, top panel", {}, {screen, underTopPanel}, {1252, 38}, Side::Below, std::nullopt},
        {"unknown, bottom panel", {}, {screen, overBottomPanel}, {1252, 752}, Side::Above, std::nullopt},
        {"unknown, left panel", {}, {screen, {60, 0, 1540, 900}}, {68, 792}, Side::Above, std::nullopt},
        {"unknown, right panel", {}, {screen, {0, 0, 1540, 900}}, {1192, 792}, Side::Above, std::nullopt},
        {"unknown, no panel", {}, {screen, screen}, {1252, 8}, Side::Below, std::nullopt},
        {"off the screen", {-90, -90, 24, 24}, {screen, screen}, {1252, 8}, Side::Below, std::nullopt},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const PopoverPlace place = popoverPlace({340, 100}, row.item, row.area);
        EXPECT_EQ(place.topLeft, row.place) << place.topLeft.x() << ", " << place.topLeft.y();
        EXPECT_EQ(place.side, row.side);
        EXPECT_EQ(place.arrowX, row.arrow);
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
    popover.show(QStringLiteral("<b>Corvane</b> is up-to-date"), Item);
    const QWidget *window = shownPopover();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(window->windowFlags() & Qt::WindowDoesNotAcceptFocus);
    const auto *label = window->findChild<QLabel *>();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), QStringLiteral("<b>Corvane</b> is up-to-date"));
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
    const struct {
        const char *name;
        int lines;
    } rows[] = {{"one line", 1}, {"three lines", 3}, {"far too many", 5000}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        popover.show(QStringList(row.lines, QStringLiteral("line")).join(u'\n'), Item);
        const QWidget *window = shownPopover();
        const int height = window->findChild<QLabel *>()->height();
        if (row.lines == 1) {
            lineHeight = height;
            chrome = window->height() - height;
        }
        EXPECT_EQ(height, std::min(row.lines * lineHeight, 10'000));
        EXPECT_EQ(window->height() - height, chrome);
    }
}

TEST(Popover, ClosesAfterTenSecondsOrByAClick)
{
    ManualClock clock(Noon);
    Popover popover(clock, [] { return false; });
    popover.show(QStringLiteral("first"), Item);
    clock.advance(9'999ms);
    EXPECT_TRUE(popover.isShown());
    clock.advance(1ms);
    EXPECT_FALSE(popover.isShown());
    EXPECT_EQ(shownPopover(), nullptr);

    popover.show(QStringLiteral("second"), QRect());
    clock.advance(6s);
    popover.show(QStringLiteral("third"), QRect());
    clock.advance(6s);
    ASSERT_TRUE(popover.isShown()) << "the end of the one before doesn't close it";
    EXPECT_EQ(shownPopover()->findChild<QLabel *>()->text(), QStringLiteral("third"));
    QTest::mouseClick(shownPopover(), Qt::LeftButton);
    EXPECT_FALSE(popover.isShown());
    EXPECT_EQ(clock.runningTimers(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
