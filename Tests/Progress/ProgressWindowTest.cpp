// The window and its view controller together, as reports and the user's hand move them.

#include "Classes/Progress/CVScheduleProgressWindowController.h"
#include "Tests/Progress/ProgressFixture.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace std::chrono_literals;

namespace
{
constexpr auto LongestFrame = 50ms;

class ProgressWindow : public ProgressFixture
{
protected:
    ProgressWindow() { controller.viewController().mainController = &role; }
    void SetUp() override { start(); }

    CVScheduleProgressViewController &target() override { return controller.viewController(); }

    static QWidget *window()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->findChild<QWidget *>(u"scWholeView"_s))
                return widget;
        }
        return nullptr;
    }
    static QString text(const QString &outlet) { return window()->findChild<QLabel *>(outlet)->text(); }
    static void press(const QString &button)
    {
        QTest::mouseClick(window()->findChild<QPushButton *>(button), Qt::LeftButton);
    }

    CVScheduleProgressWindowController controller{{.view = surroundings, .isDark = [] { return false; }}};
};
} // namespace

TEST_F(ProgressWindow, ABurstOfReportsIsShownOnceAFrame)
{
    figures(R"("percentage":"1")");
    EXPECT_FALSE(window()) << "it is made when it is first shown";
    EXPECT_EQ(clock.runningTimers(), 0);
    controller.showWindow();
    EXPECT_EQ(text(u"scProgressText"_s), u"1 %"_s) << "it comes up with what is known";

    for (int i = 0; i < 10'000; ++i)
        figures(R"("percentage":")" + QByteArray::number(1 + i % 100) + R"(","transferSpeed":")" +
                QByteArray::number(i) + R"(")");
    EXPECT_EQ(text(u"scProgressText"_s), u"1 %"_s);
    EXPECT_EQ(clock.runningTimers(), 1);
    clock.advance(LongestFrame);
    EXPECT_EQ(text(u"scProgressText"_s), u"100 %"_s);
    EXPECT_EQ(text(u"scSpeedText"_s), u"9999"_s);
    EXPECT_EQ(clock.runningTimers(), 0);

    controller.close();
    figures(R"("percentage":"5")");
    EXPECT_EQ(clock.runningTimers(), 0) << "a closed window costs nothing";
    EXPECT_EQ(text(u"scProgressText"_s), u"100 %"_s);
    controller.showWindow();
    EXPECT_EQ(text(u"scProgressText"_s), u"5 %"_s);
}

TEST_F(ProgressWindow, FiguresAroundAChangeOfState)
{
    figures(R"("percentage":"1")");
    controller.showWindow();
    figures(R"("percentage":"2","transferSpeed":"2 B/s")");
    report(4);
    EXPECT_EQ(role.switchWord(), u"2"_s) << "a change of state waits for no frame";
    figures(R"("percentage":"3")");
    clock.advance(LongestFrame);
    EXPECT_EQ(text(u"titleEmailLabel"_s), u"mona : Scheduled Backup is Paused..."_s);
    EXPECT_EQ(text(u"scProgressText"_s), u"3 %"_s);
    EXPECT_EQ(text(u"scSpeedText"_s), u"2 B/s"_s);

    figures(R"("percentage":"99")");
    report(6);
    EXPECT_FALSE(controller.isWindowVisible());
    EXPECT_EQ(role.calls.last(), u"ended"_s);
    controller.showWindow();
    EXPECT_EQ(text(u"scProgressText"_s), QString()) << "the figures went before the end";
}

TEST_F(ProgressWindow, ItsButtonsControlTheJob)
{
    figures(R"("percentage":"1")");
    report(5); // the last that the daemon says
    controller.showWindow();
    role.calls.clear();
    press(u"scPauseButton"_s);
    controller.close();
    controller.showWindow();
    EXPECT_EQ(role.calls.value(0), u"core operation 1"_s);
    EXPECT_EQ(role.switchWord(), u"2"_s) << "a window that opens undoes nothing";
    EXPECT_EQ(text(u"titleEmailLabel"_s), u"mona : Scheduled Backup is Paused..."_s);
    press(u"scPauseButton"_s);
    EXPECT_TRUE(role.calls.contains(u"core operation 2"_s));

    press(u"scStopButton"_s);
    EXPECT_TRUE(controller.isWindowVisible()) << "the answer was no";
    answer = [] { return true; };
    press(u"scStopButton"_s);
    EXPECT_FALSE(controller.isWindowVisible());
    EXPECT_EQ(role.calls.last(), u"core operation 3"_s);
}
