#include "Classes/Schedules/ScheduleStatusRules.h"

#include "Classes/Schedules/CorvaneScheduleItem.h"

using namespace Qt::StringLiterals;

using Kind = BackupTip::Kind;

ScheduleSwitch scheduleSwitch(const std::optional<QString> &content)
{
    if (content == u"0")
        return ScheduleSwitch::Disabled;
    return content == u"2" ? ScheduleSwitch::JobPaused : ScheduleSwitch::Enabled;
}

QString scheduleSwitchContent(ScheduleSwitch state)
{
    switch (state) {
    case ScheduleSwitch::Disabled:
        return u"0"_s;
    case ScheduleSwitch::JobPaused:
        return u"2"_s;
    case ScheduleSwitch::Enabled:
        break;
    }
    return u"1"_s;
}

std::optional<QString> switchAfterJob(const std::optional<QString> &content, ScheduleSwitch state)
{
    const QString word = scheduleSwitchContent(state);
    if (scheduleSwitch(content) == ScheduleSwitch::Disabled || content == word)
        return std::nullopt;
    return word;
}

bool isPauseMarker(const std::optional<QString> &content)
{
    return content == u"1" || content == u"true";
}

BackupTip tipForNextJob(const CorvaneScheduleItem *next, const QLocale &locale)
{
    if (next && next->status == QNXStatus::inProgress)
        return {Kind::InProgress, {}};
    const auto time = next ? next->scheduleTimeString(locale) : std::nullopt;
    return time ? BackupTip{Kind::Next, *time} : BackupTip{Kind::NoJobs, {}};
}

BackupTip tipForSchedules(const BackupTipInputs &in, const QLocale &locale)
{
    if (in.jobRuns)
        return {in.runningJobIsPaused ? Kind::Paused : Kind::InProgress, {}};
    if (in.jobs == ScheduleSwitch::Disabled)
        return {Kind::Disabled, {}};
    if (in.hasImmediateJob)
        return {Kind::Immediate, {}};
    const auto time = in.next ? in.next->scheduleTimeString(locale) : std::nullopt;
    return time ? BackupTip{Kind::Next, *time} : BackupTip{Kind::NoJobs, {}};
}

std::optional<ScheduleMenu> scheduleMenu(const std::optional<QString> &switchContent)
{
    if (!switchContent)
        return std::nullopt;
    const bool disabled = scheduleSwitch(switchContent) == ScheduleSwitch::Disabled;
    return ScheduleMenu{.offersEnable = disabled, .manageEnabled = !disabled};
}
