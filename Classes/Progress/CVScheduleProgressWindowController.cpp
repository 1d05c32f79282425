#include "Classes/Progress/CVScheduleProgressWindowController.h"

#include "Classes/Progress/ScheduleProgressView.h"

CVScheduleProgressWindowController::CVScheduleProgressWindowController(Surroundings surroundings)
    : m_clock(surroundings.view.clock), m_isDark(std::move(surroundings.isDark)),
      m_viewController(std::move(surroundings.view))
{
}

CVScheduleProgressWindowController::~CVScheduleProgressWindowController()
{
    m_viewController.setView(nullptr);
}

void CVScheduleProgressWindowController::makeWindow()
{
    m_window = std::make_unique<ScheduleProgressView>(m_clock);
    refreshColours();
    m_window->appears = [this] { m_viewController.viewWillAppear(); };
    m_window->pauseOrResume = [this](JobOrder order) { m_viewController.SCpauseresume(order); };
    m_window->stop = [this] { m_viewController.stopSchedulerSubmenu(); };
    m_window->sliderMoved = [this](int percent) { m_viewController.sliderValueChanged(percent); };
    m_window->sliderDone = [this](int percent) { m_viewController.sliderDidFinishMoving(percent); };
    m_viewController.setView(m_window.get());
}

void CVScheduleProgressWindowController::showWindow()
{
    if (!m_window)
        makeWindow();
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

bool CVScheduleProgressWindowController::isWindowVisible() const
{
    return m_window && m_window->isVisible();
}

void CVScheduleProgressWindowController::refreshColours()
{
    if (m_window)
        m_window->setDark(m_isDark());
}

void CVScheduleProgressWindowController::close()
{
    if (m_window)
        m_window->close();
}
