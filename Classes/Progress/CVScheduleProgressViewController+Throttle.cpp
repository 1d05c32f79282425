// How much bandwidth the job may use. The values lie in a list that the daemon shares; what is shown is always
// what is stored, but for the moment in which the user moves the slider.

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include "Classes/Progress/ThrottleStore.h"
#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/InterfaceTraceWriters.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/UserRecords.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// The stored settings of that account; none where there are none.
std::optional<QVariantMap> storedSettings(const std::optional<QString> &account)
{
    const auto list = account ? ThrottleStore::fetchSavedthrottleDataFromPlist() : std::nullopt;
    const QVariant settings = list ? list->value(*account) : QVariant();
    return settings.typeId() == QMetaType::QVariantMap ? std::optional(settings.toMap()) : std::nullopt;
}
} // namespace

std::optional<QString> CVScheduleProgressViewController::fetchCurrentLoggedUserName()
{
    return UserRecords::getLastLoggedInUser();
}

void CVScheduleProgressViewController::loadThrottleSettings()
{
    takeWaitingFigures(); // they may hide what is shown here
    const auto settings = storedSettings(fetchCurrentLoggedUserName());
    if (settings)
        setFetchData(*settings);
}

void CVScheduleProgressViewController::setFetchData(const QVariantMap &settings)
{
    const auto shown = throttleDisplay(settings);
    if (!shown)
        return;
    m_display.bandwidthBgViewIsShown = true;
    m_display.bandwidthPercent = shown->percent;
    m_display.bandwidthHelpIsShown = true;
    m_display.autoPauseIconIsShown = shown->autoPauseIconIsShown;
    changed();
}

void CVScheduleProgressViewController::sliderValueChanged(int percent)
{
    m_display.bandwidthPercent = percent;
    changed();
}

void CVScheduleProgressViewController::sliderDidFinishMoving(int percent)
{
    const auto account = fetchCurrentLoggedUserName();
    const auto settings = storedSettings(account);
    const QVariantMap entry = settings ? throttleEntry(*settings, percent) : QVariantMap();
    if (entry.isEmpty())
        return;
    // The daemon hears of it in any case; after a failure it finds the old values.
    ThrottleStore::savePlistData(SettingCategory::ThrottleSettings, *account, entry);
    sendDataToDemon(DemonSettingPingType::bandwidthThrottle, 100);
    loadThrottleSettings();
}

void CVScheduleProgressViewController::sendDataToDemon(DemonSettingPingType, qint64 tag) const
{
    if (!mainController)
        return;
    const QString user = fetchCurrentLoggedUserName().value_or(QString());
    const QString loginDetails = pathValue("LoginDetailsFilePath"_L1, {user});
    if (!QFileInfo::exists(loginDetails)) {
        QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(
            u"Sending message to daemon failed For User :%1 failed as log in plist is missing"_s.arg(user),
            true);
        return;
    }
    const QVariantMap details = PropertyList::readDictionary(loginDetails).value_or(QVariantMap());
    const OutboundMessage message = OutboundMessages::bandwidthThrottleChanged(
        mainController->consoleUser(), PropertyList::textValue(details, u"Username"_s));
    mainController->sendData(message.message, tag);
}

void CVScheduleProgressViewController::updateBandwidthMacInUseValueReceivedFromRM()
{
    const auto record = mainController ? UserRecords::getActiveUserDetails() : std::nullopt;
    if (!record || !PropertyList::textValue(*record, u"Username"_s))
        return;
    CorvaneSchedulerController &scheduler = mainController->scheduler();
    const auto records = scheduler.corvaneSchedulerDetailsForAllUsers();
    const auto running = std::ranges::find_if(
        *records, [](const auto &item) { return item && item->status == QNXStatus::inProgress; });
    if (running == records->end() || !scheduler.isScheduleBackupInProgress())
        return;
    const auto account = mainController->lastLoggedInUser();
    const auto console = mainController->consoleUser();
    if (!account || !console || (*running)->username != *account + u": "_s + *console)
        return;
    const auto type = (*running)->backupType;
    if (type == QNXBackupType::onlineBackup || type == QNXBackupType::networkDriveBackup)
        loadThrottleSettings();
    else
        m_display.bandwidthBgViewIsShown = false;
    changed();
}
