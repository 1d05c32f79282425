// The window's side: when the state reaches it. Reports change plain values only; a burst of thousands costs an
// open window one copy a frame, and a closed one nothing.

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include "Classes/Progress/ScheduleProgressView.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/QNUtility.h"

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
    updateBandwidthMacInUseValueReceivedFromRM();
    // The state was kept while the window was closed. To take the last report once more would undo what the
    // user has done since.
    if (m_display == Display())
        reSetSchedulerProgressWindow();
    frame();
}

void CVScheduleProgressViewController::showState()
{
    if (m_isSchedulePaused)
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
    // A paused job stands still in the main pane, also one that was paused before its first figures.
    const bool prepares = isProgressAnimating && !m_isSchedulePaused;
    m_display.pane = prepares ? Display::Pane::Preparing : Display::Pane::Main;
    m_display.preparingBarRuns = prepares;
    m_display.isPaused = m_isSchedulePaused;
    if (m_fileLineIsStale) {
        m_display.scFilePath = ProgressRules::fileLine(localized(m_figures.text(ProgressFigures::TransferMode)),
                                                       m_figures.text(ProgressFigures::FileName),
                                                       m_figures.text(ProgressFigures::FileSize));
        m_fileLineIsStale = false;
    }
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
