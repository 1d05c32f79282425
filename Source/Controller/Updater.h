#pragma once

#include "Platform/Clock.h"

#include <memory>

/// Looks for updates and has them installed. Main thread only.
class Updater
{
public:
    explicit Updater(Clock &clock) : m_clock(clock) {}

    /// Carries out what was asked for before the start, and looks once a day from now on.
    void start();
    void performAutoUpdateWithoutDateCheck();
    /// An installation ordered from afar; nothing while an update runs.
    void remoteInstall();
    [[nodiscard]] bool isUpdateRunning() const { return isupdaterunning; }

private:
    Clock &m_clock;
    std::unique_ptr<Clock::Timer> m_timer;
    bool isupdaterunning = false;
};
