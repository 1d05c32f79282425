#pragma once

#include <QLocale>
#include <QString>

#include <optional>

struct CorvaneScheduleItem;

/// What the file says that switches all scheduled jobs. Anything but an exact "0" or "2" counts as enabled, and
/// so does a file that cannot be read.
enum class ScheduleSwitch { Disabled, Enabled, JobPaused };
[[nodiscard]] ScheduleSwitch scheduleSwitch(const std::optional<QString> &content);
/// The content to write: "0", "1" or "2".
[[nodiscard]] QString scheduleSwitchContent(ScheduleSwitch state);

/// What the pause, the resume or the end of a job leaves in a file of that content: none where it stays as it
/// is, because it says so already, or because all jobs are switched off, which no single job ends.
[[nodiscard]] std::optional<QString> switchAfterJob(const std::optional<QString> &content,
                                                    ScheduleSwitch state);

/// Whether the marker that the daemon keeps beside a running job says that it is paused: "1" or "true", nothing
/// else.
[[nodiscard]] bool isPauseMarker(const std::optional<QString> &content);

/// What the backup line of the tool tip has to say.
struct BackupTip {
    enum class Kind { Immediate, NoJobs, Next, Disabled, Paused, InProgress };
    Kind kind = Kind::NoJobs;
    QString time; ///< of the next job, ready to show; only with Next

    friend bool operator==(const BackupTip &a, const BackupTip &b) = default;
};

/// The line that the next job alone gives; no item where there is none.
[[nodiscard]] BackupTip tipForNextJob(const CorvaneScheduleItem *next, const QLocale &locale = QLocale());

struct BackupTipInputs {
    bool jobRuns = false;
    bool runningJobIsPaused = false;
    ScheduleSwitch jobs = ScheduleSwitch::Enabled;
    bool hasImmediateJob = false;
    const CorvaneScheduleItem *next = nullptr;
};

/// The line when no other state has priority. A running job comes before the switch, the switch before what is
/// planned, a job to be started at once before a dated one.
[[nodiscard]] BackupTip tipForSchedules(const BackupTipInputs &in, const QLocale &locale = QLocale());

/// How the scheduler's submenu looks.
struct ScheduleMenu {
    bool offersEnable = false; ///< the switch reads "enable all", else "disable all"
    bool manageEnabled = true;

    friend bool operator==(const ScheduleMenu &a, const ScheduleMenu &b) = default;
};

/// The submenu for a switch file; none when the file cannot be read, and the menu stays as it is.
[[nodiscard]] std::optional<ScheduleMenu> scheduleMenu(const std::optional<QString> &switchContent);
