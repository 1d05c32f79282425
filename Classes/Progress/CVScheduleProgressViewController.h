#pragma once

#include "Classes/Progress/JobOrder.h"
#include "Classes/Progress/ProgressDisplay.h"
#include "Classes/Progress/ProgressFigures.h"
#include "Classes/Progress/ProgressRole.h"
#include "Classes/Progress/ProgressRules.h"
#include "Classes/Progress/ReportFigures.h"
#include "Classes/Schedules/ScheduleStatusRules.h"
#include "Messaging/DaemonMessage.h"
#include "Platform/Clock.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class ScheduleProgressView;

/// Which message tells the daemon of changed settings.
enum class DemonSettingPingType { bandwidthThrottle };

/// The state of the running scheduled job as the progress window shows it, and the controls over the job. It
/// takes every report, whether or not the window is open: what is shown is kept as plain values, and copied
/// into an open window when the next frame of the display is due. A report of nothing but figures waits until
/// then, unless something else happens before: what is taken is taken in its order. Main thread only.
///
/// Contents: window and frames (CVScheduleProgressViewController.cpp), reports (+Reports.cpp), reports of the
/// older form (+OlderForm.cpp), pause, resume and stop (+Control.cpp), bandwidth (+Throttle.cpp)
class CVScheduleProgressViewController
{
public:
    struct Surroundings {
        Clock &clock;
        /// Asks the user, with a yes and a no, and waits for the answer.
        std::function<bool(const QString &question)> confirm;
    };
    explicit CVScheduleProgressViewController(Surroundings surroundings);
    ~CVScheduleProgressViewController();
    CVScheduleProgressViewController(const CVScheduleProgressViewController &) = delete;

    /// @name Window and frames
    /// @{
    /// Shows its state in that window from now on; null for none. Not owned.
    void setView(ScheduleProgressView *view);
    void viewWillAppear(); ///< brings a window that is about to be shown in line
    /// The state of the job into the window that comes to the front.
    void showState();
    /// What the window shows, or would show.
    [[nodiscard]] const ProgressDisplay &display();
    [[nodiscard]] bool isSchedulePaused() const { return m_isSchedulePaused; }
    /// @}

    /// @name Reports, in CVScheduleProgressViewController+Reports.cpp
    /// @{
    /// Takes a report of the running job; the newest replaces the last one.
    void progressReceivedData(const DaemonMessage &report);
    /// Told in each pass over the files whether they know of a running job. One that neither they nor a report
    /// have told of since the pass before is over, and its end was not heard.
    void lookForUnheardChanges(bool jobRuns);
    /// @}

    /// @name Reports of the older form, in CVScheduleProgressViewController+OlderForm.cpp
    /// @{
    /// `args` are figures, phase, job kind and account, and possibly a fifth value; fewer are ignored.
    void showscheduleprogress(const QVariantList &args);
    /// @}

    /// @name Pause, resume and stop, in CVScheduleProgressViewController+Control.cpp
    /// @{
    /// Pauses or resumes the job: the window at once, the daemon by two messages.
    void SCpauseresume(JobOrder order);
    /// Stops the job when the user confirms it.
    void stopSchedulerSubmenu();
    /// @}

    /// @name Bandwidth, in CVScheduleProgressViewController+Throttle.cpp
    /// @{
    /// Shows the stored values of the signed-in account; leaves the display where there are none.
    void loadThrottleSettings();
    void sliderValueChanged(int percent);
    /// Stores the slider's value, tells the daemon, and shows what is stored. The display may say otherwise by
    /// then: a report loads the stored value while the user moves the slider.
    void sliderDidFinishMoving(int percent);
    /// Shows or hides the bandwidth group by the kind of the running job.
    void updateBandwidthMacInUseValueReceivedFromRM();
    [[nodiscard]] static std::optional<QString> fetchCurrentLoggedUserName();
    /// @}

    /// Not owned; set before each report. Without it nothing is sent.
    ProgressRole *mainController = nullptr;

private:
    using Display = ProgressDisplay;

    // Window and frames
    void changed();
    void composeTexts();
    void frame();
    void closeWindow();

    // Reports
    [[nodiscard]] bool isFiguresAlone(const DaemonMessage &report) const;
    void handleProgressResponse(const DaemonMessage &report);
    void operationStarted(const DaemonMessage &report);
    void operationReceivedProgressData(const DaemonMessage &report);
    void takeWaitingFigures();
    void endPauseOfFormerJob();
    void joinRunningOperation(const DaemonMessage &report);
    [[nodiscard]] bool isNewsOfRunningJob(const DaemonMessage &report) const;
    void setUIForScheduleProgress(const DaemonMessage &report);
    void showProgressForScheduleOperation(const ReportFigures &report);
    void showPercentage();
    void showPercent(qint64 percent);
    void showFileLine();
    void showGroup(ProgressRules::FieldGroup group);
    void operationRetries();
    void receivedPauseForScheduleOperation();
    void resetViewAfterPauseForScheduleOperation();
    void resetSchedulerProgress();
    void reSetSchedulerProgressWindow();
    void showPreparingPane(const QString &text);
    void showMainPane();
    void pauseToResume();
    void resumeToPause();
    void checkOperationDetailedTypeToDisplayBandwidth();
    [[nodiscard]] static std::optional<QString> switchText();
    void writeSwitchFile(ScheduleSwitch state);

    // Older form
    void olderFormStarted(const QString &kind, const QVariantMap &figures);
    void olderFormProgress(const QString &kind, const QVariantMap &figures);
    void takeOlderFormKind(const QString &kind);
    void progressView(const QVariantMap &data);
    void showOlderPause();
    void showOlderPercentage(qint64 percent);

    // Control
    void stopAfterQuestion();

    // Bandwidth
    void setFetchData(const QVariantMap &settings);
    void sendDataToDemon(DemonSettingPingType type, qint64 tag) const;

    Surroundings m_surroundings;
    ScheduleProgressView *m_view = nullptr;
    std::unique_ptr<Clock::Timer> m_frameTimer; ///< runs while a frame is due
    Display m_display;
    /// What the line of the file in work is made of, all from one report; put together when it is shown.
    struct FileFigures {
        bool areNew = false;
        std::string transferMode, fileName, fileSize;
        void take(const ProgressFigures &figures);
    };
    FileFigures m_fileFigures;

    ProgressFigures m_figures;
    bool m_isSchedulePaused = false;
    bool m_markerPauses = false;      ///< that was taken from the daemon's marker
    bool m_heardSincePass = false;    ///< a report has come
    bool SchOnlineBackup = false;     ///< an online backup of a deduplicating account
    bool restore = false;             ///< the job is a restore; known of the older form only
    bool progressStarted = false;     ///< percent values are shown
    bool isProgressAnimating = false; ///< the preparing pane is up
    QString emailForUser;             ///< the account of the title line
    int m_endedJobs = 0;
    std::optional<DaemonMessage> backUpProgressResponseDict; ///< the last report
    std::optional<ReportFigures> m_waitingFigures;           ///< of the last report
};
