// The window's side: when the state reaches it. Reports change plain values only; a burst of thousands costs an
// open window one decoding and one copy a frame, and a closed one nothing.

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include "Classes/Progress/ScheduleProgressView.h"
#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/UserType.h"

#include <utility>

CVScheduleProgressViewController::CVScheduleProgressViewController(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
{
}

CVScheduleProgressViewController::~CVScheduleProgressViewController() = default;

void CVScheduleProgressViewController::setView(ScheduleProgressView *view)
{
    m_view = view;
    m_frameTimer.reset();
}

void CVScheduleProgressViewController::viewWillAppear()
{
    takeWaitingFigures();
    updateBandwidthMacInUseValueReceivedFromRM();
    // The state was kept while the window was closed. To take the last report once more would undo what the
    // user has done since.
    if (m_display == Display())
        reSetSchedulerProgressWindow();
    frame();
}

void CVScheduleProgressViewController::showState()
{
    m_markerPauses = !m_isSchedulePaused && mainController && mainController->isScheduledBackupPaused() &&
                     mainController->scheduler().isScheduleBackupInProgress();
    if (m_isSchedulePaused || m_markerPauses)
        pauseToResume();
    else
        resumeToPause();
    SchOnlineBackup = QNUtility::userType == EUserType::Dedup;
    frame();
}

const ProgressDisplay &CVScheduleProgressViewController::display()
{
    composeTexts();
    return m_display;
}

void CVScheduleProgressViewController::composeTexts()
{
    takeWaitingFigures();
    // A paused job stands still in the main pane, also one that was paused before its first figures.
    const bool prepares = isProgressAnimating && !m_isSchedulePaused;
    m_display.pane = prepares ? Display::Pane::Preparing : Display::Pane::Main;
    m_display.preparingBarRuns = prepares;
    m_display.isPaused = m_isSchedulePaused;
    if (std::exchange(m_fileFigures.areNew, false))
        m_display.scFilePath =
            ProgressRules::fileLine(localized(ProgressRules::presentable(m_fileFigures.transferMode)),
                                    ProgressRules::presentable(m_fileFigures.fileName),
                                    ProgressRules::presentable(m_fileFigures.fileSize));
}

void CVScheduleProgressViewController::changed()
{
    if (!m_view || m_frameTimer || !m_view->isVisible())
        return;
    m_frameTimer = m_surroundings.clock.start(ScheduleProgressView::framePeriod(m_view), Clock::Repeat::Once,
                                              [this] { frame(); });
}

void CVScheduleProgressViewController::frame()
{
    m_frameTimer.reset();
    if (!m_view)
        return;
    composeTexts();
    m_view->apply(m_display);
}

void CVScheduleProgressViewController::closeWindow()
{
    if (m_view)
        m_view->close();
}
