#pragma once

#include "Messaging/MessageSendingModule.h"
#include "Messaging/MessageTypes.h"
#include "Platform/SessionBus/DistributedNotificationCenter.h"
#include "Source/Controller/IpcMessage.h"

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

class Account;
class DesktopNotes;
class MenuKeeper;
class StatusBoard;

/// The sync daemon: the ports to it, and what its messages and the announcements say of sync. Main thread only.
class SyncControl
{
public:
    struct Others {
        const Account &account;
        StatusBoard &board;
        DesktopNotes &notes;
        MenuKeeper &menu;
        DistributedNotificationCenter &notifications;
    };

    /// `dispatch` takes the messages of the port, on the main thread.
    SyncControl(const Others &others, std::function<void(const QVariantList &)> dispatch);
    ~SyncControl();
    SyncControl(const SyncControl &) = delete;

    /// Listens to the sync daemon where the account's sync is on.
    void start();
    void enableCorvaneSync(); ///< listens to the sync daemon from now on
    void disableSync();
    /// Brings sync in line with the account that has signed in.
    void reloadPreferences();
    /// Switches it as the main application announces: by the first text among the values.
    void enableDisbleSync(const QVariantMap &userInfo);
    void recalQuotaForSync();
    void sendLanguage(const QString &language);
    void pauseResumeSync();
    void syncPasswordChanged();

    /// @name Rows of the dispatch table
    /// @{
    void didReceiveReinitializationDone(const IpcMessage &message);
    void didReceiveQuotaRecalculated(const IpcMessage &message);
    void didReceiveSyncQuotaExceeded(const IpcMessage &message);
    void didReceiveSyncQuotaFull(const IpcMessage &message);
    void didReceiveUnlinked(const IpcMessage &message);
    void didReceiveSyncLine(const IpcMessage &message);
    void didReceiveFolderDeleted(const IpcMessage &message);
    void didReceiveSelectiveSyncModified(const IpcMessage &message);
    void didReceiveSelectiveSyncView(const IpcMessage &message);
    void didReceiveEcho(const IpcMessage &message);
    void didReceiveFolderPathMayChange(const IpcMessage &message);
    void didReceivePasswordChanged(const IpcMessage &message);
    void didReceivePauseStateChanged(const IpcMessage &message);
    void didReceivePauseOrResumeSync(const IpcMessage &message);
    void didReceiveMachineDeleted(const IpcMessage &message);
    /// @}

private:
    class PortEar;

    [[nodiscard]] bool syncStateEntry() const;
    void send(const QString &text, SyncMessage::Number number);

    Others m_others;
    std::shared_ptr<PortEar> m_portEar;
    std::unique_ptr<MessageSendingModule> mIPCWithSyncDaemon;
};
