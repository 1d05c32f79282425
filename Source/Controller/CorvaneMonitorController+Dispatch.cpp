// Messages of both daemons. A message is an array: its text first, then its number or its data, then what
// belongs to it. Some texts are acted on by themselves; then the first row below whose number fits runs. A row
// that needs a dictionary, or an array, does nothing when it gets something else.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Extensions/TextFormat.h"
#include "Messaging/MonitorMessages.h"
#include "Platform/Home.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/ApplicationFilePath.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/UserRecords.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cstdio>

using Self = CorvaneMonitorController;

QString CorvaneMonitorController::getMessageForID(const QString &message) const
{
    return MonitorMessages::getMessageForID(
        message, MonitorMessages::bundleTable(),
        {.localise = [](const QString &text) { return text.isEmpty() ? text : localized(text); },
         .resolveSyncPath = [](const QString &tail) -> std::optional<QString> {
             const auto folders =
                 PropertyList::readDictionary(pathValue(QLatin1String("SyncFolderReferenceInfoPath"), {}));
             const auto user = UserRecords::getLastLoggedInUser();
             const auto folder =
                 folders && user ? PropertyList::textValue(*folders, user->toLower()) : std::nullopt;
             return folder ? std::optional(*folder + tail) : std::nullopt;
         }});
}

/// The rows, in the order in which they are compared.
const std::array<Self::DispatchRow, 29> Self::DispatchRows{{
    {MessageTypes::ResetProfileUser, &Self::didReceiveResetProfileUser},
    {MessageTypes::InProgressLog, &Self::didReceiveInProgressLog},
    {MessageTypes::SetPermisson, &Self::didReceivePermission},
    {MessageTypes::SetResumeState, &Self::didReceiveResumeState},
    {MessageTypes::SetPauseState, &Self::didReceivePauseState},
    {MessageTypes::OpenWindowforUpgrade, &Self::didReceiveShellCommand},
    {MessageTypes::OpenWindowToViewFile, &Self::didReceiveShellCommand},
    {MessageTypes::SetToolTip, &Self::didReceiveToolTip},
    {SyncMessage::ReinitializationDone, &Self::didReceiveReinitializationDone},
    {MessageTypes::ShowDesktopNotification, &Self::didReceiveDesktopNotification},
    {MessageTypes::RemoteManage, &Self::didReceiveRemoteManage},
    {SyncMessage::QuotaRecalculated, &Self::didReceiveQuotaRecalculated},
    {SyncMessage::QuotaExceeded, &Self::didReceiveSyncQuotaExceeded},
    {SyncMessage::QuotaFull, &Self::didReceiveSyncQuotaFull},
    {SyncMessage::Unlinked, &Self::didReceiveUnlinked},
    {SyncMessage::StatusLine, &Self::didReceiveSyncLine},
    {SyncMessage::FolderDeleted, &Self::didReceiveFolderDeleted},
    {SyncMessage::SelectiveSyncModified, &Self::didReceiveSelectiveSyncModified},
    {SyncMessage::SelectiveSyncView, &Self::didReceiveSelectiveSyncView},
    {SyncMessage::Echo, &Self::didReceiveEcho},
    {SyncMessage::FolderPathMayChange, &Self::didReceiveFolderPathMayChange},
    {SyncMessage::PasswordChanged, &Self::didReceivePasswordChanged},
    {SyncMessage::PauseStateChanged, &Self::didReceivePauseStateChanged},
    {SyncMessage::PauseOrResume, &Self::didReceivePauseOrResumeSync},
    {MessageTypes::logoutOnMachineDelete, &Self::didReceiveMachineDeleted},
    {MessageTypes::UpdateLoginItem, &Self::didReceiveLoginItemChange},
    {MessageTypes::FDAMessage, &Self::didReceiveFullDiskAccess},
    {MessageTypes::AutoUpdate, &Self::didReceiveAutoUpdate},
    {SyncMessage::PushNote, &Self::didReceivePushNote},
}};

void CorvaneMonitorController::didReceiveIPCMessage(const QVariantList &message, Origin origin)
{
    // Rows touch fields and windows, so each message is taken on the main thread whichever thread brought it.
    // The sender of a port message doesn't wait for that.
    onMainThread([this, message, origin] { dispatch(message, origin); });
}

void CorvaneMonitorController::dispatch(const QVariantList &array, Origin origin)
{
    const QString first = array.value(0).toString();
    if (!array.isEmpty() && first == pathValue(QLatin1String("updateBandwidthMacInUseValue")))
        return progressView().updateBandwidthMacInUseValueReceivedFromRM();
    const QString text = getMessageForID(first);
    if (text == u"Progress")
        return didReceiveOlderProgress(array);
    if (text == u"Shutdown") {
        QNLogger::logMonitorTrace(QStringLiteral("----- ShutDown timer alert -------"));
        return later("showShutdownPopup");
    }
    actOnId(first, array);
    if (array.size() < 2)
        return;

    const IpcMessage message{array, text, array.at(1), origin};
    const int number = MessageTypes::numberOf(message.second, text);
    const auto row = std::ranges::find(DispatchRows, number, &DispatchRow::number);
    if (row != DispatchRows.end())
        (this->*row->action)(message);
}

void CorvaneMonitorController::actOnId(const QString &id, const QVariantList &array)
{
    if (id == u"T1019") {
        later("enableUnlinkStatusAndPostNotification");
    } else if (id == u"N1037") {
        QNLogger::logMonitorTrace(QStringLiteral("Notify DisableSync : ") + describe(array));
        m_notifications.post(QStringLiteral("accountResetFromWeb"));
        disableSync();
    } else if (id == u"N1012") {
        QNLogger::logMonitorTrace(QStringLiteral("Notify Password Changed : ") + describe(array));
        syncPasswordChanged();
    }
}

QString CorvaneMonitorController::describe(const QVariantList &array)
{
    constexpr qsizetype LongestTrace = 2000; // a trace file holds half a megabyte in all
    return QString::fromUtf8(QJsonDocument::fromVariant(array).toJson(QJsonDocument::Compact))
        .left(LongestTrace);
}

void CorvaneMonitorController::didReceiveResetProfileUser(const IpcMessage &message)
{
    profileUser = message.second.toMap();
}

void CorvaneMonitorController::didReceiveInProgressLog(const IpcMessage &)
{
    m_menu.apply(MenuItem::ShowProgress, {.enabled = true});
}

void CorvaneMonitorController::didReceivePermission(const IpcMessage &)
{
    m_notifications.post(pathValue(QLatin1String("gotPermissionInfo")));
}

void CorvaneMonitorController::didReceiveResumeState(const IpcMessage &)
{
    progressView().SCpauseresume(CVScheduleProgressViewController::ResumeTag);
}

void CorvaneMonitorController::didReceivePauseState(const IpcMessage &)
{
    if (!isScheduledBackupPaused())
        progressView().SCpauseresume(CVScheduleProgressViewController::PauseTag);
}

void CorvaneMonitorController::didReceiveShellCommand(const IpcMessage &message)
{
    if (message.second.typeId() != QMetaType::QVariantList)
        return;
    const QVariantList words = message.second.toList();
    const bool onlyTexts =
        std::ranges::all_of(words, [](const QVariant &word) { return word.typeId() == QMetaType::QString; });
    if (!onlyTexts)
        return;
    const auto port = m_portFile.read(pathValue(QLatin1String("TCPPortFile"), {}));
    if (message.origin != Origin::BackupDaemon || !port ||
        !m_desktop.isListenerTrusted(static_cast<quint16>(*port))) {
        QNLogger::logMonitorTrace(
            QStringLiteral("A command was not run: whoever sent it is neither root's daemon nor this user's"));
        return;
    }
    m_desktop.runShell(message.second.toStringList().join(u' '));
}

void CorvaneMonitorController::didReceiveToolTip(const IpcMessage &message)
{
    if (const auto tip = PropertyList::textValue(message.data(), QStringLiteral("message")))
        setStatusMenuToolTip(localized(*tip), std::nullopt);
}

void CorvaneMonitorController::didReceiveDesktopNotification(const IpcMessage &message)
{
    if (!message.hasData())
        return;
    const QVariantMap data = message.data();
    if (const auto log = PropertyList::textValue(data, QStringLiteral("SessionLogPath")))
        mSessionLogScheduledBackup = *log;
    shouldNotShowDesktopNotif = data.size() == 1 && data.contains(QStringLiteral("SyncStatus"));
    if (!shouldNotShowDesktopNotif)
        dictFordesktopNotif = data;
    const QString error = PropertyList::textValue(data, QStringLiteral("ErrorMessage")).value_or(QString());
    if (error.contains(QLatin1String("Device deleted from account"))) {
        CVSingletonForBackup::shared().scheduleBackupRunning = false;
        corvaneDaemonTooltip = QString();
        setButtonToolTip(QString());
    }
    if (mIsSyncEnabled.value_or(false) && syncDaemonTooltip)
        dictFordesktopNotif.insert(QStringLiteral("SyncStatus"), *syncDaemonTooltip);
    if (shouldNotShowDesktopNotif)
        return;
    currentScheduledItemForJob = schedulerController.nextScheduledItem();
    later("displayDesktopNotfn");
}

void CorvaneMonitorController::didReceiveRemoteManage(const IpcMessage &message)
{
    const auto channel = PropertyList::textValue(message.data(), QStringLiteral("ChannelType"));
    const bool someoneIsSignedIn = !mPreviouslyLoggedInUser.value_or(QString()).isEmpty();
    if (channel == QStringLiteral("remoteInstall") && !isupdaterunning) {
        QNLogger::logMonitorTrace(QStringLiteral("remote install condition IPC"));
        QNLogger::logMonitorTrace(QStringLiteral("remote install if condition"));
        later("checkforupdatewithscript");
    } else if (channel == QStringLiteral("updateprogress")) {
        later("showUpdateInProgress");
    } else if (channel == QStringLiteral("StartStop") && someoneIsSignedIn) {
        later("writeWebManagementState");
    } else if (channel == QStringLiteral("DeleteLog") && someoneIsSignedIn) {
        later("deleteLog");
    }
}

void CorvaneMonitorController::didReceiveMachineDeleted(const IpcMessage &)
{
    disableSync();
}

void CorvaneMonitorController::didReceiveLoginItemChange(const IpcMessage &)
{
    manageLaunchOnStartup();
}

void CorvaneMonitorController::didReceiveFullDiskAccess(const IpcMessage &)
{
    later("checkDaemonFullDiskAccess");
}

void CorvaneMonitorController::didReceiveAutoUpdate(const IpcMessage &)
{
    startAutoUpdateFromDaemon = true;
    performAutoUpdateWithoutDateCheck();
}

void CorvaneMonitorController::didReceivePushNote(const IpcMessage &message)
{
    constexpr int InProcessState = 28;
    const QString path = standardizedPath(formatted(
        ApplicationFilePath(InProcessState).path().value_or(QString()), {homeDirectory(), signedInUser()}));
    QNLogger::logMonitorTrace(QStringLiteral("Notify path: ") + path);
    const auto state = PropertyList::readDictionary(path);
    const auto notify = state ? PropertyList::textValue(*state, QStringLiteral("Notify")) : std::nullopt;
    if (notify == QStringLiteral("0") || notify == QStringLiteral("1"))
        QNLogger::logMonitorTrace(QStringLiteral("Notify value == ") + *notify);
    if (notify != QStringLiteral("1"))
        return;
    QNLogger::logMonitorTrace(QStringLiteral("Notification message received"));
    if (message.second.typeId() == QMetaType::QString)
        std::printf("Received notification message = %s\n", message.second.toString().toUtf8().constData());
    later("showDesktopPushNotification");
}
