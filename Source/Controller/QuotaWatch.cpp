#include "Source/Controller/QuotaWatch.h"

#include "Source/Controller/Account.h"
#include "Source/Controller/ScheduledJobs.h"
#include "Source/Controller/StatusBoard.h"
#include "Utility/Language/CVAppLocalization.h"

using namespace MonitorControllerVC;
using namespace Qt::StringLiterals;

namespace
{
constexpr Clock::Duration BlinkPeriod{500};
}

QuotaWatch::QuotaWatch(Clock &clock, Account &account, ScheduledJobs &jobs, StatusBoard &board)
    : m_clock(clock), m_account(account), m_jobs(jobs), m_board(board)
{
}

void QuotaWatch::evaluate()
{
    const QString username = m_account.signedInUser();
    if (username.isEmpty())
        return m_board.showRunningJobOnly();
    m_account.getPlan(username);
    if (StatusRules::isQuotaAtLimit(UserRecords::getQuotaDetails(username)))
        evaluateAtLimit(username);
    else
        evaluateWithinLimit(username);
}

void QuotaWatch::seen()
{
    if (blinkingTimer)
        isMonitorClickedAfterQuotaExceed = true;
    blinkingTimer.reset();
}

void QuotaWatch::evaluateAtLimit(const QString &username)
{
    if (!m_board.evaluateQuotaWarning()) {
        blinkingTimer.reset();
        m_board.putNormalIconRight();
    } else if (isMonitorClickedAfterQuotaExceed) {
        m_board.setStatusMenuIconForState(MenuIcons::upgrade);
    } else if (!blinkingTimer) {
        blinkingTimer = m_clock.start(BlinkPeriod, Clock::Repeat::Forever,
                                      [this] { m_board.setStatusMenuIconForState(MenuIcons::upgrade); });
    }
    if (UserRecords::accountType(username) == u"false"_s)
        m_board.setStatusMenuToolTip(quotaExceededTooltip.text(), std::nullopt);
    else
        m_board.checkAndDisplayScheduleToolTip();
}

void QuotaWatch::evaluateWithinLimit(const QString &username)
{
    blinkingTimer.reset();
    if (m_board.syncRests())
        m_board.putNormalIconRight();
    if (UserRecords::isAnyInteractiveBackupOperationRunning(username)) {
        const LocalizedText &tip =
            m_jobs.isBackupJobPaused() ? intBackupPausedTooltip : intBackupProgressTooltip;
        m_board.setStatusMenuToolTip(tip.text(), m_board.syncLine());
    } else {
        m_board.checkAndDisplayScheduleToolTip();
    }
}
