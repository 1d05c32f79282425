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

    CVScheduleProgressWindowController controller{{.view = {.clock = clock,
                                                            .confirm =
                                                                [this](const QString &question) {
                                                                    questions.append(question);
                                                                    return answer();
                                                                }},
                                                   .isDark = [] { return false; }}};
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

TEST_F(ProgressWindow, ItsButtonsControlTheJob)
{
    figures(R"("percentage":"1")");
    report(5); // the last that the daemon says
    controller.showWindow();
    role.calls.clear();
    press(u"scPauseButton"_s);
    clock.advance(LongestFrame);
    EXPECT_EQ(role.calls.value(0), u"core operation 1"_s);
    EXPECT_EQ(text(u"titleEmailLabel"_s), u"mona : Scheduled Backup is Paused..."_s);
    controller.close();
    controller.showWindow();
    EXPECT_EQ(role.switchWord(), u"2"_s) << "a window that opens undoes nothing";
    EXPECT_EQ(text(u"titleEmailLabel"_s), u"mona : Scheduled Backup is Paused..."_s);
    press(u"scPauseButton"_s);
    clock.advance(LongestFrame);
    EXPECT_TRUE(role.calls.contains(u"core operation 2"_s));

    press(u"scStopButton"_s);
    EXPECT_TRUE(controller.isWindowVisible()) << "the answer was no";
    answer = [] { return true; };
    press(u"scStopButton"_s);
    EXPECT_FALSE(controller.isWindowVisible());
    EXPECT_EQ(role.calls.last(), u"core operation 3"_s);
}

TEST_F(ProgressWindow, HostileNamesDoNotMoveAnything)
{
    figures(R"("percentage":"50","filename":"/a","tansferMode":"v","filesize":"1 B")");
    controller.showWindow();
    const QSize before = window()->size();
    for (const QByteArray &name : {QByteArray(10'000'000, 'x'), QByteArray("a\\u202Egpj\\nb\\u0000c"),
                                   QByteArray("\u05D0\u05D1\u05D2 \U0001F600.txt")}) {
        figures(R"("filename":")" + name + R"(","tansferMode":"v","filesize":"1 B")");
        clock.advance(LongestFrame);
        QCoreApplication::processEvents();
        EXPECT_EQ(window()->size(), before);
        EXPECT_LE(text(u"scFilePath"_s).size(), 5000);
        EXPECT_FALSE(text(u"scFilePath"_s).contains(u'\n'));
    }
}
