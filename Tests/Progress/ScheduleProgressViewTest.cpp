#include "Platform/Desktop/ElidedLabel.h"
#include "Platform/Desktop/SmoothProgressBar.h"
#include "Tests/Progress/ProgressViewFixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QStyle>
#include <QWheelEvent>

using namespace std::chrono_literals;

namespace
{
class ScheduleProgressViewTest : public ProgressViewFixture
{
public:
    std::vector<QString> heard;

    ScheduleProgressViewTest()
    {
        const auto hears = [this](const char *what) {
            return [this, what] { heard.push_back(QString::fromLatin1(what)); };
        };
        view.pauseOrResume = [this](int tag) { heard.push_back(QStringLiteral("tag %1").arg(tag)); };
        view.sliderMoved = [this](int percent) { moved = percent; };
        view.stop = hears("stop");
        view.sliderDone = hears("done");
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

    int moved = -1;
};

using Texts = std::vector<QString>;
} // namespace

TEST_F(ScheduleProgressViewTest, ShowsWhatTheDisplaySays)
{
    ProgressDisplay display = running();
    display.preparingText = QStringLiteral("prep");
    display.scProgressStatus = {QStringLiteral("again"), true};
    display.scElapsedTime = QStringLiteral("1:00");
    display.scEstimatedTime = {QStringLiteral("2:00"), false};
    view.apply(display);
    const struct {
        const char *outlet, *text;
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
        {"scRemainingFilesTitle_Dedup", "Pending Files:", true},
        {"bandwidthLabel", "Bandwidth usage:", true},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(text(row.outlet), QString::fromLatin1(row.text)) << row.outlet;
        EXPECT_EQ(isShown(row.outlet), row.isShown) << row.outlet;
    }
    EXPECT_EQ(outlet<QProgressBar>("progressBarView")->value(), 42);
    EXPECT_EQ(outlet("scFilePath")->toolTip(), text("scFilePath"));
    EXPECT_EQ(outlet("bandwidthHelpIcon")->toolTip(),
              QStringLiteral("Regulates the amount of bandwidth usage during backup operation."));
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Corvane"));
}

TEST_F(ScheduleProgressViewTest, PanesExcludeEachOther)
{
    for (const auto &[name, display] : states()) {
        view.apply(display);
        const bool prepares = display.pane == ProgressDisplay::Pane::Preparing;
        EXPECT_EQ(isShown("dummyProgressView"), prepares) << name;
        EXPECT_EQ(isShown("scWholeView"), !prepares) << name;
        EXPECT_EQ(outlet<SmoothProgressBar>("dummyProgressBar")->isSweeping(), prepares) << name;
        EXPECT_EQ(isShown("scPauseButton"), display.scPauseButtonIsShown) << name;
        EXPECT_EQ(isShown("bandwidthBgView"), display.bandwidthBgViewIsShown) << name;
    }
}

TEST_F(ScheduleProgressViewTest, TouchesOnlyWhatHasChanged)
{
    ProgressDisplay display = running();
    view.apply(display);
    const QString foreign = QStringLiteral("not by apply");
    outlet<QLabel>("scSpeedText")->setText(foreign);
    view.apply(display);
    EXPECT_EQ(text("scSpeedText"), foreign) << "an equal display";
    display.scFilePath = QStringLiteral("another");
    view.apply(display);
    EXPECT_EQ(text("scFilePath"), QStringLiteral("another"));
    EXPECT_EQ(text("scSpeedText"), foreign) << "another field";
    display.scSpeedText = QStringLiteral("1 Mbps");
    view.apply(display);
    EXPECT_EQ(text("scSpeedText"), QStringLiteral("1 Mbps"));
}

TEST_F(ScheduleProgressViewTest, ThePauseButtonTellsWhatItOffers)
{
    open();
    auto *button = outlet<QPushButton>("scPauseButton");
    ProgressDisplay display = running();
    const struct {
        bool isPaused;
        const char *text, *tip, *heard;
    } rows[] = {
        {false, " Pause", "Pause backup operation", "tag 1"},
        {true, " Resume", "Resume backup operation", "tag 0"},
        {false, " Pause", "Pause backup operation", "tag 1"},
    };
    for (const auto &row : rows) {
        display.isPaused = row.isPaused;
        view.apply(display);
        EXPECT_EQ(button->text(), QString::fromLatin1(row.text));
        EXPECT_EQ(button->toolTip(), QString::fromLatin1(row.tip));
        EXPECT_EQ(button->property("tag").toInt(), row.isPaused ? 0 : 1);
        EXPECT_FALSE(button->icon().isNull());
        heard.clear();
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(heard, Texts{QString::fromLatin1(row.heard)});
    }
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
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QString::fromLatin1(name));
    }
    QTest::keyClick(outlet("scPauseButton"), Qt::Key_Space);
    QTest::keyClick(outlet("scStopButton"), Qt::Key_Space);
    QTest::keyClick(slider(), Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(heard, (Texts{QStringLiteral("tag 1"), QStringLiteral("stop")}));
}

TEST_F(ScheduleProgressViewTest, TheSliderGoesWhereItIsClickedAndTellsOnRelease)
{
    open();
    const QPoint middle = slider()->rect().center();
    QTest::mousePress(slider(), Qt::LeftButton, {}, middle);
    EXPECT_NEAR(moved, 50, 1);
    EXPECT_EQ(text("bandwidthPercentText"), QStringLiteral("%1 %").arg(moved));
    QTest::mouseMove(slider(), middle + QPoint(500, 40));
    EXPECT_EQ(moved, 100);

    ProgressDisplay report = running();
    report.scSpeedText = QStringLiteral("1 Mbps");
    report.bandwidthPercent = 30;
    view.apply(report);
    EXPECT_EQ(slider()->value(), 100) << "a report must not pull it from under the pointer";
    EXPECT_EQ(text("bandwidthPercentText"), QStringLiteral("100 %"));

    EXPECT_TRUE(heard.empty());
    QTest::mouseRelease(slider(), Qt::LeftButton, {}, middle + QPoint(500, 40));
    EXPECT_EQ(heard, Texts{QStringLiteral("done")});
    view.apply(report);
    EXPECT_EQ(slider()->value(), 30) << "what was stored in the end";
    clock.advance(1h);
    EXPECT_EQ(heard.size(), 1U) << "a value that is shown is no change by the user";
}

TEST_F(ScheduleProgressViewTest, ASliderHeldAtItsHandleDoesNotJump)
{
    open();
    const int x = 6 + (slider()->width() - 16) * 74 / 99; // within the handle at 75 %, left of its middle
    QTest::mousePress(slider(), Qt::LeftButton, {}, QPoint(x, slider()->height() / 2));
    EXPECT_EQ(slider()->value(), 75);
    QTest::mouseRelease(slider(), Qt::LeftButton, {}, QPoint(x, slider()->height() / 2));
    EXPECT_EQ(heard, Texts{QStringLiteral("done")}) << "a press that moved nothing has its release, too";
}

TEST_F(ScheduleProgressViewTest, KeysAndTheWheelAreSavedOnce)
{
    open();
    const Texts once{QStringLiteral("done")};
    const struct {
        Qt::Key key;
        int value;
    } rows[] = {{Qt::Key_Right, 76}, {Qt::Key_PageDown, 66}, {Qt::Key_Home, 1}, {Qt::Key_End, 100}};
    for (const auto &row : rows) {
        heard.clear();
        QTest::keyPress(slider(), row.key);
        EXPECT_EQ(moved, row.value);
        EXPECT_TRUE(heard.empty());
        QTest::keyRelease(slider(), row.key);
        EXPECT_EQ(heard, once);
    }
    QTest::keyClick(slider(), Qt::Key_End);
    clock.advance(1h);
    EXPECT_EQ(heard, once) << "at the end already";

    heard.clear();
    for (int notch = 0; notch < 3; ++notch) {
        const QPointF at = slider()->rect().center();
        QWheelEvent wheel(at, slider()->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(slider(), &wheel);
        clock.advance(399ms);
    }
    EXPECT_LT(moved, 100);
    EXPECT_TRUE(heard.empty()) << "the wheel still turns";
    clock.advance(1ms);
    EXPECT_EQ(heard, once);
    QTest::keyPress(slider(), Qt::Key_Left);
    view.close();
    EXPECT_EQ(heard.at(1), QStringLiteral("done")) << "closing the window loses nothing";
}

TEST_F(ScheduleProgressViewTest, HostileTextsNeitherWidenNorHoldUpTheWindow)
{
    open();
    const QSize size = view.size();
    const QString texts[] = {
        QString(10'000'000, u'x'),
        QStringLiteral("a\nb\tc\u0007\u001b[31m\u2028d").repeated(1000),
        QStringLiteral("\u05E9\u05DC\u05D5\u05DD/\u0645\u0631\u062D\u0628\u0627\u202E").repeated(500),
        QStringLiteral("\U0001F469\u200D\U0001F469\u200D\U0001F467").repeated(2000),
        QString(1'000'000, u'\u0301'),
        QStringLiteral("<img src=\"/etc/passwd\"><table width=9999>").repeated(300),
    };
    QElapsedTimer elapsed;
    elapsed.start();
    for (const QString &text : texts) {
        ProgressDisplay display = running();
        display.scFilePath = display.titleEmailLabel = display.scSpeedText = display.preparingText = text;
        display.scProgressStatus = display.scProgressText = display.scElapsedTime_Dedup = {text, true};
        view.apply(display);
        view.grab();
        EXPECT_EQ(view.size(), size);
        const auto *label = outlet<ElidedLabel>("scFilePath");
        EXPECT_EQ(label->text(), text);
        EXPECT_LE(label->toolTip().size(), 4000);
        EXPECT_LT(label->shownText().size(), 5000);
    }
    EXPECT_LT(elapsed.elapsed(), 10'000);
}

TEST_F(ScheduleProgressViewTest, ALongAccountLeavesTheStateReadable)
{
    open();
    ProgressDisplay display = running();
    const QString end = QStringLiteral(" : Scheduled Backup is in progress");
    display.titleEmailLabel = QString(200, u'm') + end;
    view.apply(display);
    const QString shown = outlet<ElidedLabel>("titleEmailLabel")->shownText();
    EXPECT_TRUE(shown.startsWith(QStringLiteral("mmm"))) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith(u'm' + end)) << shown.toStdString();
    EXPECT_TRUE(shown.contains(u'\u2026'));
}
