#pragma once

#include "Companions/Common/Commands.h"
#include "Companions/MainApplication/AccountFiles.h"
#include "Companions/MainApplication/ScheduleBook.h"
#include "Companions/MainApplication/ThrottleSettings.h"

/// The stand-in for the main desktop application: signs in and out, keeps the schedules, the quota figures and
/// the settings, and posts the notifications that the rest of the product listens to.
class MainApplication
{
public:
    explicit MainApplication(PathTable table);

    /// Runs one command line.
    [[nodiscard]] CommandResult run(const QString &line) const;

private:
    void addAccountCommands();
    void addScheduleCommands();
    void addThrottleCommands();
    void addSettingsCommands();

    [[nodiscard]] CommandResult signIn(const QStringList &words);
    [[nodiscard]] CommandResult addSchedule(const QStringList &words);
    [[nodiscard]] CommandResult scheduleImmediate(const QStringList &words);
    [[nodiscard]] CommandResult switchJobs(const QStringList &words);
    [[nodiscard]] CommandResult setQuota(const QStringList &words);
    [[nodiscard]] CommandResult setBandwidth(const QStringList &words);
    [[nodiscard]] CommandResult setAutoPause(const QStringList &words);
    [[nodiscard]] CommandResult leaveFlag(const QStringList &words) const;
    [[nodiscard]] CommandResult setLanguage(const QStringList &words);
    [[nodiscard]] CommandResult setAppearance(const QStringList &words);
    [[nodiscard]] CommandResult notify(const QStringList &words);

    /// The result of a change that others must hear of: `written` false is a failure, else the notification
    /// behind `key` of the path table goes out.
    [[nodiscard]] CommandResult announce(bool written, const QString &key) const;

    PathTable m_table;
    AccountFiles m_accounts;
    ScheduleBook m_schedules;
    ThrottleSettings m_throttle;
    CommandTable m_commands;
};
