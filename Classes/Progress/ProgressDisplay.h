#pragma once

#include <QString>

/// A text that can be hidden.
struct DisplayText {
    QString text;
    bool isShown = true;
    friend bool operator==(const DisplayText &, const DisplayText &) = default;
};

/// Everything that the progress window shows, as plain values named like the outlets. The view controller
/// changes them with each report; the view copies them into its outlets when a frame is due.
struct ProgressDisplay {
    enum class Pane { Preparing, Main };
    Pane pane = Pane::Main;
    QString preparingText;         ///< beside the indeterminate bar of the preparing pane
    bool preparingBarRuns = false; ///< the indeterminate bar moves

    QString titleEmailLabel;
    QString scFilePath; ///< verb, file and size; also the field's tool tip
    QString scSpeedText;
    DisplayText scProgressStatus{{}, false};
    DisplayText scProgressText{{}, false}; ///< "42 %"
    int progressPercent = 0;               ///< of the bar, 0 to 100
    bool progressBarIsShown = false;

    bool scFileCountViewIsShown = false;
    QString scRemainingFiles_Dedup;
    QString scCompletedFiles_Dedup;
    QString scEstimatedTime_Dedup;
    DisplayText scElapsedTime_Dedup{{}, false};

    bool backupInfoBgViewIsShown = true;
    QString scElapsedTime;
    DisplayText scEstimatedTime;

    bool bandwidthBgViewIsShown = false;
    int bandwidthPercent = 0; ///< of the slider and its text "42 %"
    bool bandwidthHelpIsShown = false;
    bool autoPauseIconIsShown = false;

    bool scPauseButtonIsShown = false;
    bool isPaused = false; ///< the pause button offers to resume
    bool scStopButtonIsShown = true;

    friend bool operator==(const ProgressDisplay &, const ProgressDisplay &) = default;
};
