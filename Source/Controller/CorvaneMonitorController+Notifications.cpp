// What the other programs of the product announce. The names that stand in the path table are looked up; the
// others are the announcements' own.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/NotificationCenter.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Paths/PathTable.h"

void CorvaneMonitorController::registerObservers()
{
    using Handler = DistributedNotificationCenter::Handler;
    const auto observe = [this](const QString &name, Handler handler) {
        m_observations.push_back(m_notifications.observe(name, std::move(handler)));
    };
    const auto call = [this](void (CorvaneMonitorController::*method)()) -> Handler {
        return [this, method](const QString &, const QVariantMap &) { (this->*method)(); };
    };
    const auto notYet = [](const char *operation) -> Handler {
        return [operation](const QString &, const QVariantMap &) { later(operation); };
    };
    const auto key = [](const char *name) { return pathValue(QLatin1String(name)); };

    observe(QStringLiteral("AppleInterfaceThemeChangedNotification"),
            call(&CorvaneMonitorController::darkModeChanged));
    observe(QStringLiteral("OpenPreferencesNotification"),
            [this](const QString &object, const QVariantMap &) { openPreferences(object); });
    observe(QStringLiteral("ActivityLogsFromMonitor"), call(&CorvaneMonitorController::viewSessionLog));
    observe(QStringLiteral("EnableDisableSync"),
            [this](const QString &, const QVariantMap &userInfo) { enableDisbleSync(userInfo); });
    observe(QStringLiteral("ShowSchedulerProgress"), call(&CorvaneMonitorController::showSchedulerProgress));
    observe(QStringLiteral("RecalQuotaForSync"), call(&CorvaneMonitorController::recalQuotaForSync));
    observe(QStringLiteral("selectiveSyncPlistDidChange"), notYet("selectiveSyncPlistModified"));
    observe(key("EnablePreferencesNotification"), call(&CorvaneMonitorController::enablePreferences));
    observe(key("DisablePreferencesNotification"), call(&CorvaneMonitorController::resetMonitorUI));
    observe(key("ReloadPreferences"), call(&CorvaneMonitorController::reloadPreferencesFromApp));
    m_localObservations.push_back(NotificationCenter::local().observe(
        QStringLiteral("closeProxySettingsWindow"),
        [](const QVariantMap &) { later("closeProxySettingsWindowNotificationReceived"); }));
    observe(QStringLiteral("moveStarted"), call(&CorvaneMonitorController::moveStartedToolTipMessage));
    observe(QStringLiteral("moveCompleted"), call(&CorvaneMonitorController::moveCompletedToolTipMessage));
    observe(key("FDAOpenFromCorvane"), notYet("closeFullDiskAccessWindow"));
    observe(key("UpdateImmediateScheduleToolTip"), call(&CorvaneMonitorController::checkForTotalQuota));
    observe(
        QStringLiteral("SendingIPCMessageFailedFromSDToM"),
        [this](const QString &, const QVariantMap &userInfo) { receivedIPCMessageFailedFromSDToM(userInfo); });
}

void CorvaneMonitorController::receivedIPCMessageFailedFromSDToM(const QVariantMap &userInfo)
{
    const QVariant details = userInfo.value(QStringLiteral("MessageDetails"));
    QVariantList array;
    for (const QString &text : details.toStringList())
        array.append(text);
    QNLogger::logMonitorTrace(QStringLiteral("receivedIPCMessageFailedFromSDToM: ") + describe(array));
    didReceiveIPCMessage(array, Origin::SyncDaemon);
}

void CorvaneMonitorController::enableDisbleSync(const QVariantMap &userInfo)
{
    // No key is agreed on for the word, so the first text counts.
    for (const QVariant &value : userInfo) {
        if (value.typeId() != QMetaType::QString)
            continue;
        if (value.toString() == u"EnableSync")
            enableCorvaneSync();
        else
            disableSync();
        return;
    }
    disableSync();
}

void CorvaneMonitorController::recalQuotaForSync()
{
    sendToSyncDaemon(QStringLiteral("SyncRecalculateQuota"), SyncMessage::QuotaRecalculated);
}
