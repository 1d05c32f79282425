#include "Source/Controller/SyncControl.h"

#include "Platform/Home.h"
#include "Platform/KeptFiles.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Account.h"
#include "Source/Controller/DesktopNotes.h"
#include "Source/Controller/Later.h"
#include "Source/Controller/MenuKeeper.h"
#include "Source/Controller/StatusBoard.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

using namespace Qt::StringLiterals;

namespace
{
QVariantMap syncStates()
{
    return KeptFiles::dictionary(pathValue("SyncStateFilePath"_L1, {}), Limits::SharedListBytes)
        .value_or(QVariantMap());
}
} // namespace

/// Brings port messages home to the main thread; one that comes when its owner is gone goes nowhere.
class SyncControl::PortEar : public MessageSendingDelegate
{
public:
    explicit PortEar(std::function<void(const QVariantList &)> take) : m_take(std::move(take)) {}

    void didReceiveIPCMessage(const QVariantList &array) override
    {
        onMainThread([ear = m_self.lock(), array] {
            if (ear && ear->m_take)
                ear->m_take(array);
        });
    }

    std::function<void(const QVariantList &)> m_take; ///< main thread only; empty once its owner goes
    std::weak_ptr<PortEar> m_self;
};

SyncControl::SyncControl(const Others &others, std::function<void(const QVariantList &)> dispatch)
    : m_others(others), m_portEar(std::make_shared<PortEar>(std::move(dispatch)))
{
    m_portEar->m_self = m_portEar;
}

SyncControl::~SyncControl()
{
    m_portEar->m_take = nullptr;
}

void SyncControl::start()
{
    if (syncStateEntry())
        enableCorvaneSync();
}

/// Whether sync is on is said under the lower-cased name alone.
bool SyncControl::syncStateEntry() const
{
    const QString user = m_others.account.signedInUser();
    return !user.isEmpty() && PropertyList::boolValue(syncStates(), user.toLower()).value_or(false);
}

void SyncControl::enableCorvaneSync()
{
    m_others.board.setSyncEnabled(true);
    mIPCWithSyncDaemon.reset(); // lets go of the port's name before it is asked for again
    const SyncPortNames names = syncPortNames(QNUtility::machineID(), ::consoleUser().value_or(QString()));
    mIPCWithSyncDaemon = std::make_unique<MessageSendingModule>(m_portEar);
    mIPCWithSyncDaemon->setupConnection(names.monitor, names.syncDaemon);
}

void SyncControl::disableSync()
{
    later("disableSync");
}

void SyncControl::reloadPreferences()
{
    const QString user = m_others.account.signedInUser();
    // An account that is known only by its lower-cased name has not used sync from here before.
    m_others.notifications.post(u"isFreshAccChecking"_s, QString(),
                                {{u"isFreshAccount"_s, !syncStates().contains(user)}});
    m_others.board.setSyncEnabled(syncStateEntry());
    m_others.board.forgetSyncLines();
    if (!m_others.board.isSyncEnabled()) {
        disableSync();
    } else {
        const auto list =
            PropertyList::readDictionary(pathValue("SyncDetailsUserPath"_L1, {homeDirectory(), user}));
        if (const auto pause = list ? PropertyList::textValue(*list, u"Pause"_s) : std::nullopt) {
            m_others.board.takeStoredSyncState(*pause == u"1");
            enableCorvaneSync();
        }
    }
    m_others.board.setStatusMenuIconForState(MenuIcons::normal);
}

void SyncControl::enableDisbleSync(const QVariantMap &userInfo)
{
    // No key is agreed on for the word, so the first text counts.
    for (const QVariant &value : userInfo) {
        if (value.typeId() != QMetaType::QString)
            continue;
        if (value.toString() != u"EnableSync")
            disableSync();
        else if (m_others.account.isSignedIn())
            enableCorvaneSync();
        return;
    }
}

void SyncControl::recalQuotaForSync()
{
    send(u"SyncRecalculateQuota"_s, SyncMessage::QuotaRecalculated);
}

void SyncControl::sendLanguage(const QString &language)
{
    send(language, SyncMessage::Language);
}

void SyncControl::send(const QString &text, SyncMessage::Number number)
{
    if (mIPCWithSyncDaemon)
        mIPCWithSyncDaemon->sendIPCMessage(text, number, false);
}

void SyncControl::pauseResumeSync()
{
    later("pauseResumeSync");
}

void SyncControl::syncPasswordChanged()
{
    later("syncPasswordChanged");
}

void SyncControl::didReceiveReinitializationDone(const IpcMessage &)
{
    QNLogger::logMonitorTrace(u"Re-initialization completed"_s);
    QMenu *submenu = m_others.menu.menu().submenu(MenuItem::CloudDrive);
    for (QAction *action : submenu ? submenu->actions() : QList<QAction *>()) {
        if (action->text() == u"Re-initialize")
            action->setEnabled(true);
    }
}

void SyncControl::didReceiveQuotaRecalculated(const IpcMessage &)
{
    QNLogger::logMonitorTrace(u"ReCalQuotaForSync message received"_s);
    m_others.notifications.post(pathValue("RecalQuotaForSyncDone"_L1));
}

void SyncControl::didReceiveSyncQuotaExceeded(const IpcMessage &message)
{
    QNLogger::logMonitorTrace(u"SyncQuotaExceeded, inArray = "_s + IpcMessage::describe(message.array));
    m_others.board.setSyncQuotaFull(false);
}

void SyncControl::didReceiveSyncQuotaFull(const IpcMessage &message)
{
    QNLogger::logMonitorTrace(u"SyncQuotaFull, inArray = "_s + IpcMessage::describe(message.array));
    m_others.board.setSyncQuotaFull(true);
}

void SyncControl::didReceiveUnlinked(const IpcMessage &message)
{
    QNLogger::logMonitorTrace(u"Sync unlinked message obtained, inArray = "_s +
                              IpcMessage::describe(message.array));
    later("unlinkSync");
}

void SyncControl::didReceiveSyncLine(const IpcMessage &message)
{
    const StatusBoard::SyncLine line = m_others.board.takeSyncLine(message.text);
    if (line.shown)
        m_others.notes.setSyncStatus(*line.shown);
    if (!line.isPaused)
        later("refreshDesktopNotification");
    else if (line.shown)
        later("updatePauseResumeSyncMenu");
}

void SyncControl::didReceiveFolderDeleted(const IpcMessage &)
{
    QNLogger::logMonitorTrace(u"SyncFolderDeleted Received in CorvaneMonitor"_s);
    disableSync();
    m_others.notifications.post(pathValue("syncFolderDeleted"_L1));
}

void SyncControl::didReceiveSelectiveSyncModified(const IpcMessage &)
{
    QNLogger::logMonitorTrace(u"Got the SelectiveSyncModified msg"_s);
}

void SyncControl::didReceiveSelectiveSyncView(const IpcMessage &)
{
    m_others.notifications.post(pathValue("updateSelectiveSyncUI"_L1));
}

void SyncControl::didReceiveEcho(const IpcMessage &)
{
    send(QString(), SyncMessage::Echo);
}

void SyncControl::didReceiveFolderPathMayChange(const IpcMessage &)
{
    m_others.notifications.post(pathValue("EnableModifyButtonToChooseThePath"_L1));
}

void SyncControl::didReceivePasswordChanged(const IpcMessage &)
{
    syncPasswordChanged();
}

void SyncControl::didReceivePauseStateChanged(const IpcMessage &)
{
    later("updatePauseResumeSyncMenu");
}

void SyncControl::didReceivePauseOrResumeSync(const IpcMessage &)
{
    pauseResumeSync();
}

void SyncControl::didReceiveMachineDeleted(const IpcMessage &)
{
    disableSync();
}
