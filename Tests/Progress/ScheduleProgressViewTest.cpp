#include "Platform/Desktop/ElidedLabel.h"
#include "Tests/Progress/ProgressViewFixture.h"
#include "Tests/Support/ForEachRow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>
#include <QPushButton>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
class ScheduleProgressViewTest : public ProgressViewFixture
{
protected:
    ScheduleProgressViewTest()
    {
        view.pauseOrResume = [this](JobOrder order) {
            heard.append(order == JobOrder::Pause ? u"pause"_s : u"resume"_s);
        };
        view.stop = [this] { heard.append(u"stop"_s); };
        view.sliderMoved = [this](int percent) { moved = percent; };
        view.sliderDone = [this](int percent) {
            heard.append(u"done"_s);
            moved = percent;
        };
    }
    [[nodiscard]] QString text(const char *name) const { return outlet<QLabel>(name)->text(); }
    [[nodiscard]] bool isShown(const char *name) const { return !outlet(name)->isHidden(); }
    [[nodiscard]] CustomSlider *slider() const { return outlet<CustomSlider>("bandwidthSlider"); }

    /// Opens the window upon a running job.
    void open()
    {
        view.apply(running());
        show();
    }

    QStringList heard;
    int moved = -1;
};
} // namespace

TEST_F(ScheduleProgressViewTest, ShowsWhatTheDisplaySays)
{
    ProgressDisplay display = running();
    display.preparingText = u"prep"_s;
    display.scProgressStatus = {u"again"_s, true};
    display.scElapsedTime = u"1:00"_s;
    display.scEstimatedTime = {u"2:00"_s, false};
    view.apply(display);
    const struct {
        const char *name, *text;
        bool isShown;
    } rows[] = {
        {"dummyProgressLabel", "prep", true},
        {"titleEmailLabel", "ann@example.com : Scheduled Backup is in progress", true},
        {"scFilePath", "Backing up /home/ann/notes.txt  (12.4 MB)", true},
        {"scSpeedText", "24.6 Mbps", true},
        {"scProgressStatus", "again", true},
        {"scProgressText", "42 %", true},
        {"scRemainingFiles_Dedup", "12,408", true},
        {"scCompletedFiles_Dedup", "1,348,977", true},
        {"scEstimatedTime_Dedup", "00:24:10", true},
        {"scElapsedTime_Dedup", "117:32:08", true},
        {"scElapsedTime", "1:00", true},
        {"scEstimatedTime", "2:00", false},
        {"bandwidthPercentText", "75 %", true},
    };
    forEachRow(rows, [this](const auto &row) {
        EXPECT_EQ(text(row.name), QString::fromLatin1(row.text));
        EXPECT_EQ(isShown(row.name), row.isShown);
    });
    EXPECT_EQ(outlet<QProgressBar>("progressBarView")->value(), 42);
    EXPECT_EQ(outlet("scFilePath")->toolTip(), text("scFilePath"));
    EXPECT_EQ(view.windowTitle(), u"Corvane"_s);
    for (const auto &[name, state] : states()) {
        view.apply(state);
        const bool prepares = state.pane == ProgressDisplay::Pane::Preparing;
        EXPECT_EQ(isShown("dummyProgressView"), prepares) << name;
        EXPECT_EQ(isShown("scWholeView"), !prepares) << name;
        EXPECT_EQ(isShown("scPauseButton"), state.scPauseButtonIsShown) << name;
        EXPECT_EQ(isShown("bandwidthBgView"), state.bandwidthBgViewIsShown) << name;
    }
}

TEST_F(ScheduleProgressViewTest, ThePauseButtonTellsWhatItOffers)
{
    open();
    auto *button = outlet<QPushButton>("scPauseButton");
    for (const bool paused : {false, true, false}) {
        ProgressDisplay display = running();
        display.isPaused = paused;
        view.apply(display);
        EXPECT_EQ(button->text(), paused ? u" Resume"_s : u" Pause"_s);
        EXPECT_EQ(button->toolTip(), paused ? u"Resume backup operation"_s : u"Pause backup operation"_s);
        EXPECT_EQ(button->accessibleName(), button->text());
        EXPECT_FALSE(button->icon().isNull());
        QTest::mouseClick(button, Qt::LeftButton);
    }
    EXPECT_EQ(heard, QStringList({u"pause"_s, u"resume"_s, u"pause"_s}));
}

TEST_F(ScheduleProgressViewTest, IsWorkedByKeysAlone)
{
    bool wasVisible = true;
    view.appears = [&] { wasVisible = view.windowHandle() && view.windowHandle()->isVisible(); };
    open();
    EXPECT_FALSE(wasVisible) << "told before it is on the screen";
    EXPECT_EQ(QApplication::focusWidget(), &view) << "no button is at hand for a stray blank";
    for (const char *name : {"scPauseButton", "scStopButton", "bandwidthSlider", "bandwidthHelpIcon"}) {
        QTest::keyClick(&view, Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), outlet(name)) << name;
    }
    QTest::keyClick(outlet("scPauseButton"), Qt::Key_Space);
    QTest::keyClick(outlet("scStopButton"), Qt::Key_Space);
    QTest::keyClick(slider(), Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(heard, QStringList({u"pause"_s, u"stop"_s}));
}

TEST_F(ScheduleProgressViewTest, TheSliderGoesWhereItIsClickedAndTellsOnRelease)
{
    open();
    const QPoint middle = slider()->rect().center();
    QTest::mousePress(slider(), Qt::LeftButton, {}, middle);
    EXPECT_NEAR(moved, 50, 1);
    EXPECT_EQ(text("bandwidthPercentText"), u"%1 %"_s.arg(moved));
    QTest::mouseMove(slider(), middle + QPoint(500, 40));
    EXPECT_EQ(moved, 100);

    ProgressDisplay report = running();
    report.bandwidthPercent = 30;
    view.apply(report);
    EXPECT_EQ(slider()->value(), 100) << "a report must not pull it from under the pointer";
    EXPECT_EQ(text("bandwidthPercentText"), u"100 %"_s);

    EXPECT_EQ(heard, QStringList());
    QTest::mouseRelease(slider(), Qt::LeftButton, {}, middle + QPoint(500, 40));
    view.apply(report);
    EXPECT_EQ(slider()->value(), 30) << "what was stored in the end";
    clock.advance(1h);
    EXPECT_EQ(heard, QStringList(u"done"_s)) << "a value that is shown is no change by the user";
}

TEST_F(ScheduleProgressViewTest, ASliderHeldAtItsHandleDoesNotJump)
{
    open();
    const QPoint handle(6 + (slider()->width() - 16) * 74 / 99, slider()->height() / 2); // left of its middle
    QTest::mousePress(slider(), Qt::LeftButton, {}, handle);
    EXPECT_EQ(slider()->value(), 75);
    QTest::mouseRelease(slider(), Qt::LeftButton, {}, handle);
    EXPECT_EQ(heard, QStringList(u"done"_s)) << "a press that moved nothing has its release, too";
}

TEST_F(ScheduleProgressViewTest, KeysAndTheWheelAreSavedOnce)
{
    open();
    const QStringList once(u"done"_s);
    const Row<Qt::Key, int> rows[] = {{"right", Qt::Key_Right, 76},
                                      {"page down", Qt::Key_PageDown, 66},
                                      {"home", Qt::Key_Home, 1},
                                      {"end", Qt::Key_End, 100}};
    forEachRow(rows, [&](const auto &row) {
        heard.clear();
        QTest::keyPress(slider(), row.given);
        EXPECT_EQ(moved, row.expected);
        EXPECT_EQ(heard, QStringList());
        QTest::keyRelease(slider(), row.given);
        EXPECT_EQ(heard, once);
    });
    QTest::keyClick(slider(), Qt::Key_End);
    clock.advance(1h);
    EXPECT_EQ(heard, once) << "at the end already";

    heard.clear();
    for (int notch = 0; notch < 3; ++notch) {
        const QPointF at = slider()->rect().center();
        QWheelEvent wheel(at, slider()->mapToGlobal(at), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(slider(), &wheel);
        clock.advance(399ms);
    }
    EXPECT_LT(moved, 100);
    EXPECT_EQ(heard, QStringList()) << "the wheel still turns";
    clock.advance(1ms);
    EXPECT_EQ(heard, once);
    QTest::keyPress(slider(), Qt::Key_Left);
    view.close();
    EXPECT_EQ(heard, once + once) << "closing the window loses nothing";
}

TEST_F(ScheduleProgressViewTest, HostileTextsNeitherWidenNorHoldUpTheWindow)
{
    open();
    const QSize size = view.size();
    QElapsedTimer elapsed;
    elapsed.start();
    for (const QString &hostile :
         {QString(10'000'000, u'x'), u"a\nb\tc\u0007\u001b[31m\u2028d"_s.repeated(1000),
          u"\u05E9\u05DC\u05D5\u05DD/\u0645\u0631\u062D\u0628\u0627\u202E"_s.repeated(500),
          u"\U0001F469\u200D\U0001F469\u200D\U0001F467"_s.repeated(2000), QString(1'000'000, u'\u0301'),
          u"<img src=\"/etc/passwd\"><table width=9999>"_s.repeated(300)}) {
        ProgressDisplay display = running();
        display.scFilePath = display.titleEmailLabel = display.scSpeedText = display.preparingText = hostile;
        display.scProgressStatus = display.scProgressText = display.scElapsedTime_Dedup = {hostile, true};
        view.apply(display);
        view.grab();
        EXPECT_EQ(view.size(), size);
        EXPECT_LE(outlet("scFilePath")->toolTip().size(), 4000);
        EXPECT_LT(outlet<ElidedLabel>("scFilePath")->shownText().size(), 5000);
    }
    EXPECT_LT(elapsed.elapsed(), 10'000);
}

TEST_F(ScheduleProgressViewTest, ALongAccountLeavesTheStateReadable)
{
    open();
    ProgressDisplay display = running();
    const QString end = u" : Scheduled Backup is in progress"_s;
    display.titleEmailLabel = QString(200, u'm') + end;
    view.apply(display);
    const QString shown = outlet<ElidedLabel>("titleEmailLabel")->shownText();
    EXPECT_TRUE(shown.startsWith(u"mmm"_s) && shown.contains(u'\u2026') && shown.endsWith(u'm' + end))
        << qPrintable(shown);
}
