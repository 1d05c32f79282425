#include "Source/Controller/ScheduledJobs.h"

#include "Extensions/TextFormat.h"
#include "Platform/KeptFiles.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Account.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Paths/PathTable.h"

#include <QFileInfo>

#include <algorithm>
#include <tuple>

using namespace MonitorControllerVC;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using MenuRules::RunningJob;
using ProgressRules::ProgressType;

namespace
{
constexpr Clock::Duration LookPeriod = 500ms; ///< between two looks at the files while figures come

QString textOf(const BackupTip &tip)
{
    switch (tip.kind) {
    case BackupTip::Kind::Immediate:
        return NXTSCHEDULE_IMMEDIATE;
    case BackupTip::Kind::NoJobs:
        return NXTSCHEDULE_NOJOBS;
    case BackupTip::Kind::Next:
        return formatted(nextScheudletime, {tip.time});
    case BackupTip::Kind::Disabled:
        return disableScheduledJobsTooltip;
    case BackupTip::Kind::Paused:
        return scheduleJobPausedTooltip;
    case BackupTip::Kind::InProgress:
        return backupProgressTooltip;
    }
    return {};
}
} // namespace

ScheduledJobs::ScheduledJobs(const Account &account, const Clock &clock, std::function<bool()> isPressed)
    : m_account(account), m_clock(clock), m_isPressed(std::move(isPressed))
{
}

void ScheduledJobs::findRunningJob()
{
    // Finds the account whose markers the icon asks for. Where no job runs that is nobody, which is not the
    // same as not yet known: reports are dropped unseen only before this.
    if (!isJobRunning() && !schedulerController.currentscheduleuser)
        schedulerController.currentscheduleuser = QString();
}

void ScheduledJobs::jobHasEnded()
{
    schedulerController.currentscheduleuser = QString();
    forgetFacts();
}

RunningJob ScheduledJobs::runningJob()
{
    if (!isJobRunning())
        return RunningJob::None;
    return schedulerController.currentScheduleType == QNXScheduleType::backup ? RunningJob::Backup
                                                                              : RunningJob::Other;
}

bool ScheduledJobs::isScheduledBackupPaused() const
{
    const QString user = schedulerController.currentscheduleuser.value_or(QString());
    const QString throttleFile = pathValue("BandwidthThrottleFilePathForTql"_L1, {user});
    if (throttleFile.isEmpty())
        return false;
    return isPauseMarker(KeptFiles::text(QFileInfo(throttleFile).path() + u"/pause.txt"_s));
}

bool ScheduledJobs::isRunningJobPaused()
{
    // A marker or a "2" that a lost job has left says nothing of the next one.
    return isJobRunning() &&
           (isScheduledBackupPaused() || switchFile() == ScheduleSwitch::JobPaused || m_isPressed());
}

bool ScheduledJobs::isBackupJobPaused() const
{
    const QString path =
        pathValue("BackupJobThrottlePath"_L1, {m_account.lastLoggedInUser().value_or(QString())});
    return KeptFiles::text(path) == u"-1"_s;
}

bool ScheduledJobs::isBackupInProgress()
{
    const QVariantMap status =
        KeptFiles::dictionary(pathValue("ApplicationStatusPath"_L1, {})).value_or(QVariantMap());
    const QString user = m_account.signedInUser();
    if (!user.isEmpty() && PropertyList::textValue(status, u"Interactive"_s) == user)
        return true;
    const auto scheduled = PropertyList::textValue(status, u"Schedule"_s);
    const auto records = schedulerController.corvaneSchedulerDetailsForAllUsers();
    return scheduled && std::ranges::any_of(*records, [&](const auto &item) {
               return item && item->corvaneUsername == scheduled;
           });
}

std::optional<QString> ScheduledJobs::switchText() const
{
    return KeptFiles::text(pathValue("SchedulerStatusInfoPath"_L1, {}));
}

ScheduleSwitch ScheduledJobs::switchFile() const
{
    return scheduleSwitch(switchText());
}

void ScheduledJobs::setSwitch(const QString &word) const
{
    writeTextOrTrace(pathValue("SchedulerStatusInfoPath"_L1, {}), word);
}

QString ScheduledJobs::nextJobLine()
{
    const auto next = schedulerController.nextScheduledItem();
    return textOf(tipForNextJob(next ? &*next : nullptr));
}

QString ScheduledJobs::backupLine()
{
    BackupTipInputs in;
    std::optional<CorvaneScheduleItem> next;
    in.jobRuns = isJobRunning();
    in.runningJobIsPaused = in.jobRuns && isRunningJobPaused();
    if (!in.jobRuns) {
        in.jobs = switchFile();
        if (in.jobs != ScheduleSwitch::Disabled) {
            in.hasImmediateJob = schedulerController.getImmediateScheduledItem().has_value();
            next = schedulerController.nextScheduledItem();
            in.next = next ? &*next : nullptr;
        }
    }
    return textOf(tipForSchedules(in));
}

bool ScheduledJobs::isRecent(const QDateTime &time) const
{
    const QDateTime now = m_clock.now();
    return time <= now && now < time.addMSecs(LookPeriod.count());
}

ScheduledJobs::Facts &ScheduledJobs::facts(std::optional<ProgressType> type)
{
    const quint64 turn = mainThreadTurn();
    if (m_facts && m_facts->turn == turn)
        return *m_facts;
    // Figures come by the dozen each second and change nothing of this; any other report does.
    if (m_facts && type == ProgressType::Figures) {
        if (m_facts->recentIn == turn || isRecent(m_facts->seen)) {
            m_facts->recentIn = turn;
            return *m_facts;
        }
    }
    const RunningJob job = runningJob();
    m_facts = Facts{.turn = turn, .seen = m_clock.now(), .job = job, .paused = isRunningJobPaused()};
    return *m_facts;
}

bool ScheduledJobs::isReportOfRunningJob(const QString &userName)
{
    if (!schedulerController.currentscheduleuser)
        return false;
    if (schedulerController.currentscheduleuser == userName)
        return true;
    // Another account's job may have begun since; the archive tells.
    std::ignore = facts(std::nullopt);
    return schedulerController.currentscheduleuser == userName;
}
