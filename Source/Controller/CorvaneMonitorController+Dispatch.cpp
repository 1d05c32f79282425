// Messages of both daemons. A message is an array: its text first, then its number or its data, then what
// belongs to it. Some texts are acted on by themselves; then the first row below whose number fits runs. A row
// that needs a dictionary, or an array, does nothing when it gets something else.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Messaging/MessageTypes.h"
#include "Messaging/MonitorMessages.h"
#include "Platform/Home.h"
#include "Platform/Limits.h"
#include "Platform/MainThread.h"
#include "Platform/MessageText.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Later.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/ApplicationFilePath.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/UserRecords.h"

#include <algorithm>
#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;
using Self = CorvaneMonitorController;

namespace
{
std::optional<QString> signedInSyncFolder()
{
    const auto folders = PropertyList::readDictionary(pathValue("SyncFolderReferenceInfoPath"_L1, {}), nullptr,
                                                      Limits::SharedListBytes);
    const auto user = UserRecords::getLastLoggedInUser();
    return folders && user ? PropertyList::textValue(*folders, user->toLower()) : std::nullopt;
}
} // namespace

QString CorvaneMonitorController::getMessageForID(const QString &message) const
{
    return MonitorMessages::getMessageForID(
        message, MonitorMessages::bundleTable(),
        {.localise = [](const QString &text) { return text.isEmpty() ? text : localized(text); },
         // The folder is looked up at most once a message, whose lines may all ask for it.
         .resolveSyncPath = [folder = std::optional<std::optional<QString>>()](
                                const QString &tail) mutable -> std::optional<QString> {
             if (!folder)
                 folder = signedInSyncFolder();
             return *folder ? std::optional(**folder + tail) : std::nullopt;
         }});
}

/// Hands a message to the concern that owns the row.
template<auto Owner, auto Operation>
void Self::to(Self &self, const IpcMessage &message)
{
    (self.*Owner.*Operation)(message);
}

template<auto Operation>
void Self::own(Self &self, const IpcMessage &message)
{
    (self.*Operation)(message);
}

/// The rows, in the order in which they are compared.
const std::array<Self::DispatchRow, 29> Self::DispatchRows{{
    {MessageTypes::ResetProfileUser, own<&Self::didReceiveResetProfileUser>},
    {MessageTypes::InProgressLog, own<&Self::didReceiveInProgressLog>},
    {MessageTypes::SetPermisson, own<&Self::didReceivePermission>},
    {MessageTypes::SetResumeState, own<&Self::didReceiveResumeState>},
    {MessageTypes::SetPauseState, own<&Self::didReceivePauseState>},
    {MessageTypes::OpenWindowforUpgrade, own<&Self::didReceiveShellCommand>},
    {MessageTypes::OpenWindowToViewFile, own<&Self::didReceiveShellCommand>},
    {MessageTypes::SetToolTip, own<&Self::didReceiveToolTip>},
    {SyncMessage::ReinitializationDone, to<&Self::m_sync, &SyncControl::didReceiveReinitializationDone>},
    {MessageTypes::ShowDesktopNotification, to<&Self::m_notes, &DesktopNotes::didReceiveDesktopNotification>},
    {MessageTypes::RemoteManage, own<&Self::didReceiveRemoteManage>},
    {SyncMessage::QuotaRecalculated, to<&Self::m_sync, &SyncControl::didReceiveQuotaRecalculated>},
    {SyncMessage::QuotaExceeded, to<&Self::m_sync, &SyncControl::didReceiveSyncQuotaExceeded>},
    {SyncMessage::QuotaFull, to<&Self::m_sync, &SyncControl::didReceiveSyncQuotaFull>},
    {SyncMessage::Unlinked, to<&Self::m_sync, &SyncControl::didReceiveUnlinked>},
    {SyncMessage::StatusLine, to<&Self::m_sync, &SyncControl::didReceiveSyncLine>},
    {SyncMessage::FolderDeleted, to<&Self::m_sync, &SyncControl::didReceiveFolderDeleted>},
    {SyncMessage::SelectiveSyncModified, to<&Self::m_sync, &SyncControl::didReceiveSelectiveSyncModified>},
    {SyncMessage::SelectiveSyncView, to<&Self::m_sync, &SyncControl::didReceiveSelectiveSyncView>},
    {SyncMessage::Echo, to<&Self::m_sync, &SyncControl::didReceiveEcho>},
    {SyncMessage::FolderPathMayChange, to<&Self::m_sync, &SyncControl::didReceiveFolderPathMayChange>},
    {SyncMessage::PasswordChanged, to<&Self::m_sync, &SyncControl::didReceivePasswordChanged>},
    {SyncMessage::PauseStateChanged, to<&Self::m_sync, &SyncControl::didReceivePauseStateChanged>},
    {SyncMessage::PauseOrResume, to<&Self::m_sync, &SyncControl::didReceivePauseOrResumeSync>},
    {MessageTypes::logoutOnMachineDelete, to<&Self::m_sync, &SyncControl::didReceiveMachineDeleted>},
    {MessageTypes::UpdateLoginItem, own<&Self::didReceiveLoginItemChange>},
    {MessageTypes::FDAMessage, own<&Self::didReceiveFullDiskAccess>},
    {MessageTypes::AutoUpdate, own<&Self::didReceiveAutoUpdate>},
    {SyncMessage::PushNote, own<&Self::didReceivePushNote>},
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
    if (!array.isEmpty() && first == pathValue("updateBandwidthMacInUseValue"_L1))
        return m_reports.updateBandwidth();
    const QString text = getMessageForID(first);
    if (text == u"Progress")
        return m_reports.didReceiveOlderProgress(array);
    if (text == u"Shutdown") {
        QNLogger::logMonitorTrace(u"----- ShutDown timer alert -------"_s);
        return later("showShutdownPopup");
    }
    actOnId(first, array);
    if (array.size() < 2)
        return;

    const IpcMessage message{array, text, array.at(1), origin};
    const int number = MessageTypes::numberOf(message.second, text);
    const auto row = std::ranges::find(DispatchRows, number, &DispatchRow::number);
    if (row != DispatchRows.end())
        row->act(*this, message);
}

void CorvaneMonitorController::actOnId(const QString &id, const QVariantList &array)
{
    if (id == u"T1019") {
        later("enableUnlinkStatusAndPostNotification");
    } else if (id == u"N1037") {
        QNLogger::logMonitorTrace(u"Notify DisableSync : "_s + IpcMessage::describe(array));
        m_notifications.post(u"accountResetFromWeb"_s);
        m_sync.disableSync();
    } else if (id == u"N1012") {
        QNLogger::logMonitorTrace(u"Notify Password Changed : "_s + IpcMessage::describe(array));
        m_sync.syncPasswordChanged();
    }
}

void CorvaneMonitorController::didReceiveResetProfileUser(const IpcMessage &)
{
    later("takeProfileUser");
}

void CorvaneMonitorController::didReceiveInProgressLog(const IpcMessage &)
{
    m_logs.displayLogs();
    menu().apply(MenuItem::ShowProgress, {.enabled = true});
}

void CorvaneMonitorController::didReceivePermission(const IpcMessage &)
{
    m_notifications.post(pathValue("gotPermissionInfo"_L1));
}

void CorvaneMonitorController::didReceiveResumeState(const IpcMessage &)
{
    m_reports.resume();
}

void CorvaneMonitorController::didReceivePauseState(const IpcMessage &)
{
    if (!isScheduledBackupPaused())
        m_reports.pause();
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
    const QString notRun = u"A command was not run: "_s;
    if (const auto reason = m_daemon.reasonToRefuse(message.origin == Origin::BackupDaemon))
        m_daemon.refuse(notRun + *reason);
    else if (!m_desktop.runShell(message.second.toStringList().join(u' ')))
        m_daemon.refuse(notRun + u"too many wait or run already, or the system refused it"_s);
}

void CorvaneMonitorController::didReceiveToolTip(const IpcMessage &message)
{
    if (const auto tip = PropertyList::textValue(message.data(), u"message"_s))
        m_board.setStatusMenuToolTip(localized(shownPart(*tip)), std::nullopt);
}

void CorvaneMonitorController::didReceiveRemoteManage(const IpcMessage &message)
{
    const auto channel = PropertyList::textValue(message.data(), u"ChannelType"_s);
    if (!m_account.isSignedIn())
        return;
    const bool someoneIsSignedIn = !m_account.shownUser().isEmpty();
    if (channel == u"remoteInstall"_s && !m_updater.isUpdateRunning()) {
        QNLogger::logMonitorTrace(u"remote install condition IPC"_s);
        m_updater.remoteInstall();
    } else if (channel == u"updateprogress"_s) {
        later("showUpdateInProgress");
    } else if (channel == u"StartStop"_s && someoneIsSignedIn) {
        later("writeWebManagementState");
    } else if (channel == u"DeleteLog"_s && someoneIsSignedIn) {
        m_logs.deleteLog(message.data());
    }
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
    m_updater.performAutoUpdateWithoutDateCheck();
}

void CorvaneMonitorController::didReceivePushNote(const IpcMessage &message)
{
    constexpr int InProcessState = 28;
    const QString path = accountPath(ApplicationFilePath(InProcessState).path().value_or(QString()),
                                     {homeDirectory(), m_account.signedInUser()});
    QNLogger::logMonitorTrace(u"Notify path: "_s + path);
    const auto state = PropertyList::readDictionary(path);
    const auto notify = state ? PropertyList::textValue(*state, u"Notify"_s) : std::nullopt;
    if (notify == u"0"_s || notify == u"1"_s)
        QNLogger::logMonitorTrace(u"Notify value == "_s + *notify);
    if (notify != u"1"_s)
        return;
    QNLogger::logMonitorTrace(u"Notification message received"_s);
    if (message.second.typeId() == QMetaType::QString)
        std::printf("Received notification message = %s\n", message.second.toString().toUtf8().constData());
    later("showDesktopPushNotification");
}
