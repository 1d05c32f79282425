#pragma once

#include "Classes/Progress/ScheduleProgressView.h"
#include "Tests/Support/PrintQt.h"
#include "Utility/Language/SchedulerProgressVC.h"

#include <QTest>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

/// The window over a clock that is moved by hand.
struct ProgressViewFixture : testing::Test {
    ManualClock clock{QDateTime(QDate(2026, 3, 2), QTime(12, 0))};
    ScheduleProgressView view{clock};

    template<class Widget = QWidget>
    Widget *outlet(const char *name) const
    {
        auto *found = view.findChild<Widget *>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    void show()
    {
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    static ProgressDisplay running()
    {
        ProgressDisplay display;
        display.titleEmailLabel = QStringLiteral("ann@example.com : ") + SchedulerProgressVC::prorgessTitile;
        display.scFilePath = QStringLiteral("Backing up /home/ann/notes.txt  (12.4 MB)");
        display.scSpeedText = QStringLiteral("24.6 Mbps");
        display.scProgressText = {QStringLiteral("42 %"), true};
        display.progressPercent = 42;
        display.progressBarIsShown = true;
        display.scFileCountViewIsShown = true;
        display.scRemainingFiles_Dedup = QStringLiteral("12,408");
        display.scCompletedFiles_Dedup = QStringLiteral("1,348,977");
        display.scEstimatedTime_Dedup = QStringLiteral("00:24:10");
        display.scElapsedTime_Dedup = {QStringLiteral("117:32:08"), true};
        display.backupInfoBgViewIsShown = false;
        display.bandwidthBgViewIsShown = true;
        display.bandwidthPercent = 75;
        display.bandwidthHelpIsShown = true;
        display.scPauseButtonIsShown = true;
        return display;
    }

    /// One display for each thing that the window can have to say.
    static std::vector<std::pair<const char *, ProgressDisplay>> states()
    {
        using namespace SchedulerProgressVC;
        ProgressDisplay idle;
        idle.scElapsedTime = QStringLiteral("00:00:00");
        ProgressDisplay preparing = running();
        preparing.pane = ProgressDisplay::Pane::Preparing;
        preparing.preparingText = prepFilelist;
        preparing.preparingBarRuns = true;
        ProgressDisplay preparationRetries = preparing;
        preparationRetries.preparingText = retrying;
        ProgressDisplay retries = running();
        retries.scProgressStatus = {retrying, true};
        ProgressDisplay calculates = running();
        calculates.scProgressText.isShown = false;
        calculates.scEstimatedTime_Dedup = calculating;
        calculates.bandwidthPercent = 100;
        calculates.autoPauseIconIsShown = true;
        ProgressDisplay paused = running();
        paused.isPaused = true;
        paused.titleEmailLabel = QStringLiteral("ann@example.com : ") + pausedTitle;
        ProgressDisplay info = running();
        info.scFileCountViewIsShown = info.bandwidthBgViewIsShown = false;
        info.backupInfoBgViewIsShown = true;
        info.scElapsedTime = QStringLiteral("117:32:08");
        info.scEstimatedTime.text = calculating;
        info.scProgressText.text = QStringLiteral("100 %");
        ProgressDisplay restore = info;
        restore.scPauseButtonIsShown = false;
        return {{"idle", idle},         {"preparing", preparing}, {"preparation retries", preparationRetries},
                {"running", running()}, {"retries", retries},     {"calculates", calculates},
                {"paused", paused},     {"backup info", info},    {"restore", restore}};
    }
};
