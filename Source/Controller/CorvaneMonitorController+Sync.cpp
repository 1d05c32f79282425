// The sync daemon: the ports to it, and what its messages say of the state of sync. The lines themselves go
// through +Status.cpp.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Extensions/TextFormat.h"
#include "Platform/Home.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

using namespace MonitorControllerVC;

/// Brings port messages home to the main thread; a message that comes when the controller is gone goes nowhere.
class CorvaneMonitorController::PortEar : public MessageSendingDelegate
{
public:
    explicit PortEar(CorvaneMonitorController &controller) : m_controller(&controller) {}

    void didReceiveIPCMessage(const QVariantList &array) override
    {
        onMainThread([ear = m_self.lock(), array] {
            if (ear && ear->m_controller)
                ear->m_controller->dispatch(array, Origin::SyncDaemon);
        });
    }

    CorvaneMonitorController *m_controller; ///< main thread only; null once the controller goes
    std::weak_ptr<PortEar> m_self;
};

void CorvaneMonitorController::makePortEar()
{
    m_portEar = std::make_shared<PortEar>(*this);
    m_portEar->m_self = m_portEar;
}

void CorvaneMonitorController::dropPortEar()
{
    m_portEar->m_controller = nullptr;
}

void CorvaneMonitorController::enableCorvaneSync()
{
    mIsSyncEnabled = true;
    if (mIPCWithSyncDaemon)
        return;
    const SyncPortNames names = syncPortNames(QNUtility::machineID(), ::consoleUser().value_or(QString()));
    mIPCWithSyncDaemon = std::make_unique<MessageSendingModule>(m_portEar);
    mIPCWithSyncDaemon->setupConnection(names.monitor, names.syncDaemon);
}

void CorvaneMonitorController::sendToSyncDaemon(const QString &text, SyncMessage::Number number)
{
    if (mIPCWithSyncDaemon)
        mIPCWithSyncDaemon->sendIPCMessage(text, number, false);
}

void CorvaneMonitorController::didReceiveReinitializationDone(const IpcMessage &)
{
    QNLogger::logMonitorTrace(QStringLiteral("Re-initialization completed"));
    QMenu *submenu = m_menu.submenu(MenuItem::CloudDrive);
    for (QAction *action : submenu ? submenu->actions() : QList<QAction *>()) {
        if (action->text() == u"Re-initialize")
            action->setEnabled(true);
    }
}

void CorvaneMonitorController::didReceiveQuotaRecalculated(const IpcMessage &)
{
    QNLogger::logMonitorTrace(QStringLiteral("ReCalQuotaForSync message received"));
    m_notifications.post(pathValue(QLatin1String("RecalQuotaForSyncDone")));
}

void CorvaneMonitorController::didReceiveSyncQuotaExceeded(const IpcMessage &message)
{
    isSyncQuotaFull = false;
    QNLogger::logMonitorTrace(QStringLiteral("SyncQuotaExceeded, inArray = ") + describe(message.array));
    setStatusMenuToolTip(corvaneDaemonTooltip, syncDaemonTooltip);
}

void CorvaneMonitorController::didReceiveSyncQuotaFull(const IpcMessage &message)
{
    isSyncQuotaFull = true;
    QNLogger::logMonitorTrace(QStringLiteral("SyncQuotaFull, inArray = ") + describe(message.array));
    setStatusMenuToolTip(corvaneDaemonTooltip, syncDaemonTooltip);
}

void CorvaneMonitorController::didReceiveUnlinked(const IpcMessage &message)
{
    QNLogger::logMonitorTrace(QStringLiteral("Sync unlinked message obtained, inArray = ") +
                              describe(message.array));
    unlinkSync();
}

void CorvaneMonitorController::didReceiveSyncLine(const IpcMessage &message)
{
    const bool enabled = mIsSyncEnabled.value_or(false);
    const auto list =
        PropertyList::readDictionary(standardizedPath(formatted(loggedSyncDetailsUserPath, {signedInUser()})));
    if (list && StatusRules::flagValue(list->value(QStringLiteral("Pause"))).value_or(false)) {
        setStatusMenuToolTip(corvaneDaemonTooltip, pausedTooltip.text());
        if (!enabled) {
            isMenuIconForSyncAnimating = false;
            return;
        }
        dictFordesktopNotif.insert(QStringLiteral("SyncStatus"), pausedTooltip.text());
        syncDaemonTooltip = pausedTooltip;
        later("updatePauseResumeSyncMenu");
        return;
    }
    setStatusMenuToolTip(corvaneDaemonTooltip, message.text);
    syncDaemonTooltip = message.text;
    if (enabled)
        dictFordesktopNotif.insert(QStringLiteral("SyncStatus"), message.text);
    else
        syncDaemonTooltip.reset();
    isMenuIconForSyncAnimating = false; // the next working line starts the animation anew
    if (enabled)
        syncIsStopped = StatusRules::isFinalSyncLine(message.text);
}

void CorvaneMonitorController::didReceiveFolderDeleted(const IpcMessage &)
{
    QNLogger::logMonitorTrace(QStringLiteral("SyncFolderDeleted Received in CorvaneMonitor"));
    disableSync();
    m_notifications.post(pathValue(QLatin1String("syncFolderDeleted")));
}

void CorvaneMonitorController::didReceiveSelectiveSyncModified(const IpcMessage &)
{
    QNLogger::logMonitorTrace(QStringLiteral("Got the SelectiveSyncModified msg"));
}

void CorvaneMonitorController::didReceiveSelectiveSyncView(const IpcMessage &)
{
    m_notifications.post(pathValue(QLatin1String("updateSelectiveSyncUI")));
}

void CorvaneMonitorController::didReceiveEcho(const IpcMessage &)
{
    sendToSyncDaemon(QString(), SyncMessage::Echo);
}

void CorvaneMonitorController::didReceiveFolderPathMayChange(const IpcMessage &)
{
    m_notifications.post(pathValue(QLatin1String("EnableModifyButtonToChooseThePath")));
}

void CorvaneMonitorController::didReceivePasswordChanged(const IpcMessage &)
{
    syncPasswordChanged();
}

void CorvaneMonitorController::didReceivePauseStateChanged(const IpcMessage &)
{
    later("updatePauseResumeSyncMenu");
}

void CorvaneMonitorController::didReceivePauseOrResumeSync(const IpcMessage &)
{
    pauseResumeSync();
}
