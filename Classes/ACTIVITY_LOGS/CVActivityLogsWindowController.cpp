#include "Classes/ACTIVITY_LOGS/CVActivityLogsWindowController.h"

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"

using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration SettingsRest = 1s; ///< without a further change, before they are written
}

CVActivityLogsWindowController::CVActivityLogsWindowController(Surroundings surroundings)
    : m_clock(surroundings.view.clock), m_defaults(surroundings.view.defaults),
      m_isDark(std::move(surroundings.isDark)), m_viewController(std::move(surroundings.view))
{
}

CVActivityLogsWindowController::~CVActivityLogsWindowController()
{
    if (m_settingsTimer)
        keepSettings();
    m_viewController.setView(nullptr);
}

void CVActivityLogsWindowController::makeWindow()
{
    m_window = std::make_unique<ActivityLogsView>();
    m_window->restore(LogWindowSettings::load(m_defaults));
    refreshColours();
    m_window->stoodAnew = [this] { keepSettingsSoon(); };
    m_window->disappears = [this] { keepSettings(); };
    m_viewController.setView(m_window.get());
}

void CVActivityLogsWindowController::showWindow()
{
    if (!m_window)
        makeWindow();
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

bool CVActivityLogsWindowController::isWindowVisible() const
{
    return m_window && m_window->isVisible();
}

void CVActivityLogsWindowController::close()
{
    if (m_window)
        m_window->close();
}

void CVActivityLogsWindowController::refreshColours()
{
    if (m_window)
        m_window->setDark(m_isDark());
}

void CVActivityLogsWindowController::keepSettingsSoon()
{
    m_settingsTimer = m_clock.start(SettingsRest, Clock::Repeat::Once, [this] { keepSettings(); });
}

void CVActivityLogsWindowController::keepSettings()
{
    m_settingsTimer.reset();
    m_window->settings().save(m_defaults);
}
