#include "Source/Controller/DesktopNotes.h"

#include "Platform/KeptFiles.h"
#include "Platform/MessageText.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/IpcMessage.h"
#include "Source/Controller/Later.h"
#include "Source/Controller/StatusBoard.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Paths/PathTable.h"

using namespace Qt::StringLiterals;

namespace
{
/// The texts and figures of a message for later: what else comes with it may be megabytes that nobody shows.
QVariantMap keptPart(const QVariantMap &data)
{
    QVariantMap kept;
    for (auto entry = data.cbegin(); entry != data.cend(); ++entry) {
        if (entry->typeId() == QMetaType::QString)
            kept.insert(entry.key(), shownPart(entry->toString()));
        else if (entry->typeId() != QMetaType::QVariantMap && entry->typeId() != QMetaType::QVariantList)
            kept.insert(entry.key(), *entry);
    }
    return kept;
}
} // namespace

void DesktopNotes::didReceiveDesktopNotification(const IpcMessage &message)
{
    if (!message.hasData())
        return;
    const QVariantMap data = message.data();
    if (const auto log = PropertyList::textValue(data, u"SessionLogPath"_s))
        mSessionLogScheduledBackup = shownPart(*log);
    const bool isSyncAlone = data.size() == 1 && data.contains(u"SyncStatus"_s);
    if (!isSyncAlone)
        dictFordesktopNotif = keptPart(data);
    const QString error = PropertyList::textValue(data, u"ErrorMessage"_s).value_or(QString());
    if (error.contains("Device deleted from account"_L1)) {
        CVSingletonForBackup::shared().scheduleBackupRunning = false;
        m_board.dropBackupLine();
    }
    if (m_board.isSyncEnabled() && m_board.syncLine())
        setSyncStatus(*m_board.syncLine());
    if (!isSyncAlone)
        later("displayDesktopNotfn");
}

void DesktopNotes::takeSettings(const QString &user)
{
    const auto notices = KeptFiles::dictionary(accountPath(
        pathValue("ApplicationRootFolderPath"_L1, {}) + u"/%@/NotificationDetails.plist"_s, {user}));
    shouldDisplayDesktopNotification =
        !(notices && PropertyList::boolValue(*notices, u"adminNotificationEnableState"_s).value_or(false));
}
