#pragma once

#include "Platform/Clock.h"

#include <QString>

#include <memory>

class Account;
class ScheduledJobs;
class StatusBoard;

/// Brings icon and tool tip in line with the account's figures, in each 10-second pass, whatever message was
/// missed; at the limit the icon blinks until the user has seen it. Main thread only.
class QuotaWatch
{
public:
    QuotaWatch(Clock &clock, Account &account, ScheduledJobs &jobs, StatusBoard &board);

    void evaluate();
    /// The user has opened the menu: the blink ends, and its icon stands.
    void seen();
    /// The account has signed out.
    void stopBlinking() { blinkingTimer.reset(); }

private:
    void evaluateAtLimit(const QString &username);
    void evaluateWithinLimit(const QString &username);

    Clock &m_clock;
    Account &m_account;
    ScheduledJobs &m_jobs;
    StatusBoard &m_board;
    bool isMonitorClickedAfterQuotaExceed = false;
    std::unique_ptr<Clock::Timer> blinkingTimer;
};
