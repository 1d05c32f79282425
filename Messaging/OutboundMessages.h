#pragma once

#include <QString>
#include <QVariant>

#include <optional>

/// A message to the daemon, ready to be sent: `{"type": ..., "data": ...}` and the tag of its write.
struct OutboundMessage {
    QVariantMap message;
    qint64 tag = 0;
};

/// What the user wants of the running job.
enum class ECoreOperationActionType { Pause = 1, Resume = 2, Stop = 3 };

/// Every message that leaves, built from plain values. A text that may be absent is an optional, and then its
/// key is absent too.
namespace OutboundMessages
{
/// The `data` of the first message on a connection. `inProgress` goes in only when there is something in it.
[[nodiscard]] QVariantMap pingDetails(const std::optional<QString> &profileName,
                                      const std::optional<QString> &corvaneUserName,
                                      const QVariantList &inProgress);
[[nodiscard]] OutboundMessage pingFromMonitor(const QVariantMap &details);

struct CoreOperation {
    std::optional<QString> profileName; ///< the console user
    std::optional<QString> userName;    ///< whose job runs
    bool isRestore = false;
    bool isDedup = false; ///< the account is a deduplicating one
};
/// Pauses, resumes or stops the running job. Keys of `details` that the operation does not set stay.
[[nodiscard]] OutboundMessage clientCoreOperation(const QVariantMap &details, ECoreOperationActionType action,
                                                  const CoreOperation &operation);

[[nodiscard]] OutboundMessage setPauseState();
[[nodiscard]] OutboundMessage setResumeState();

/// Which backups a change of the schedules is about.
enum class RemoteBackup { Online, Local };
[[nodiscard]] OutboundMessage remoteManageScheduler(const std::optional<QString> &profile, RemoteBackup kind);
[[nodiscard]] OutboundMessage remoteManageSwitch(const std::optional<QString> &profile,
                                                 const std::optional<QString> &userName, bool enabled);
[[nodiscard]] OutboundMessage remoteManageSettings(const std::optional<QString> &profile);

/// The timer of continuous protection has changed. `data` is empty where the account is not known.
[[nodiscard]] OutboundMessage cdpTimer(const std::optional<QString> &profileName,
                                       const std::optional<QString> &userName);
[[nodiscard]] OutboundMessage fdaMessage(const std::optional<QString> &profileName,
                                         const std::optional<QString> &corvaneUserName);

/// How the shutdown prompt ended.
enum class ShutdownAnswer { ShutDown = 1000, Cancel = 1001, CountDownEnded = 1002 };
[[nodiscard]] OutboundMessage shutdown(ShutdownAnswer answer);

/// Absent names are sent as empty texts here.
[[nodiscard]] OutboundMessage bandwidthThrottleChanged(const std::optional<QString> &profileName,
                                                       const std::optional<QString> &userName);
/// Sync was paused or resumed.
[[nodiscard]] OutboundMessage syncStateChanged();
} // namespace OutboundMessages
