#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QVariant>

#include <optional>

class ArchiveObject;

// The raw values count from 0 in the order given; they are what the archive holds.
enum class QNXScheduleType { backup, restore };
enum class QNXBackupType { onlineBackup, localBackup, networkDriveBackup, expressDriveBackup, notBackup };
enum class QNXStatus { yetToStart, inProgress, cancelled, completed };
enum class QNXFrequency {
    once,
    hourly,
    daily,
    weekly,
    monthly,
    weekdays,
    none
}; ///< once: to be started at once
enum class QNXModify { kNModified, kModified };
enum class QNXTimeSettings { recommended, custom, startImmediate };

/// A scheduled job, as the main application archives it. Every field of a new item is unset.
struct CorvaneScheduleItem {
    std::optional<QString> username;        ///< "<account>: <login name>", the owner as one text
    std::optional<QString> corvaneUsername; ///< backup account that owns the job
    std::optional<QDateTime> scheduleTime;  ///< when the job runs next: UTC, whole seconds
    std::optional<QNXBackupType> backupType;
    std::optional<QNXStatus> status;
    std::optional<QNXScheduleType> scheduleType;
    std::optional<QNXScheduleType> currentScheduleType; ///< never archived
    std::optional<QNXFrequency> frequency;
    std::optional<QNXModify> modify;
    std::optional<QString> userAtServer;
    std::optional<QString> serverName;
    std::optional<QString> password; ///< carried only: never shown, never traced
    std::optional<QString> processReferenceFile;
    std::optional<QString> emailids;
    std::optional<QString> quotaServerName;
    std::optional<QString> profileName; ///< local login name that owns the job
    std::optional<QString> destination;
    std::optional<bool> displayDesktopNotification;
    std::optional<bool> shouldStartMissedScheduleBackup;
    std::optional<bool> sendEmailNotification;
    std::optional<bool> isUseSSL;
    std::optional<bool> isBackupNow; ///< never archived
    std::optional<QNXTimeSettings> scheduleTimeSettings;
    std::optional<QVariantList> selectedDaysArray;
    std::optional<bool> sendLogExtract;
    std::optional<bool> notifyOnFailure;
    std::optional<bool> isAutoSyncEnabled;
    std::optional<qint64> notifyMe;

    /// The item in an archived record. A field of the wrong kind stays unset. A number that is missing reads as
    /// 0 and so as the first value of its enumeration; a missing boolean reads as false.
    [[nodiscard]] static CorvaneScheduleItem decoded(const ArchiveObject &coder);

    /// scheduleTime as "MM-dd-yyyy HH:mm", local time, in the digits of `locale`; none when it is unset.
    [[nodiscard]] std::optional<QString> scheduleTimeString(const QLocale &locale = QLocale()) const;
};
