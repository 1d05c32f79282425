#include "Messaging/OutboundMessages.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace
{
OutboundMessage message(const QString &type, const QVariant &data, qint64 tag)
{
    return {{{u"type"_s, type}, {u"data"_s, data}}, tag};
}

void insertIfKnown(QVariantMap &map, const QString &key, const std::optional<QString> &value)
{
    if (value)
        map.insert(key, *value);
}

OutboundMessage remoteManage(const std::optional<QString> &profile, const QString &channel, QVariantMap data)
{
    insertIfKnown(data, u"Profile"_s, profile);
    data.insert(u"ChannelType"_s, channel);
    return message(u"RemoteManage"_s, data, 0);
}
} // namespace

namespace OutboundMessages
{
QVariantMap pingDetails(const std::optional<QString> &profileName,
                        const std::optional<QString> &corvaneUserName, const QVariantList &inProgress)
{
    QVariantMap data;
    insertIfKnown(data, u"profileName"_s, profileName);
    insertIfKnown(data, u"corvaneUserName"_s, corvaneUserName);
    if (!inProgress.isEmpty())
        data.insert(u"inProgress"_s, inProgress);
    return data;
}

OutboundMessage pingFromMonitor(const QVariantMap &details)
{
    return message(u"PingFromMonitor"_s, details, 3);
}

OutboundMessage clientCoreOperation(const QVariantMap &details, ECoreOperationActionType action,
                                    const CoreOperation &operation)
{
    QVariantMap data = details;
    insertIfKnown(data, u"profileName"_s, operation.profileName);
    insertIfKnown(data, u"userName"_s, operation.userName);
    data.insert(u"operationStartType"_s, 1);
    data.insert(u"actionType"_s, static_cast<int>(action));
    data.insert(u"operationType"_s, operation.isRestore ? 2 : 0);
    data.insert(u"serverType"_s, operation.isDedup ? 1 : 0);
    return message(u"clientCoreOperation"_s, data, 100);
}

OutboundMessage setPauseState()
{
    return message(u"SetPauseState"_s, QString(), 7);
}

OutboundMessage setResumeState()
{
    return message(u"SetResumeState"_s, QString(), 8);
}

OutboundMessage remoteManageScheduler(const std::optional<QString> &profile, RemoteBackup kind)
{
    return remoteManage(profile, u"Scheduler"_s,
                        {{u"BackupType"_s, kind == RemoteBackup::Online ? u"online"_s : u"local"_s}});
}

OutboundMessage remoteManageSwitch(const std::optional<QString> &profile,
                                   const std::optional<QString> &userName, bool enabled)
{
    QVariantMap data{{u"remoteStatus"_s, enabled ? u"1"_s : u"0"_s}};
    insertIfKnown(data, u"UserName"_s, userName);
    return remoteManage(profile, u"EnableDisable"_s, data);
}

OutboundMessage remoteManageSettings(const std::optional<QString> &profile)
{
    return remoteManage(profile, u"Settings"_s, {});
}

OutboundMessage cdpTimer(const std::optional<QString> &profileName, const std::optional<QString> &userName)
{
    QVariantMap data;
    if (userName) {
        insertIfKnown(data, u"profileName"_s, profileName);
        data.insert(u"userName"_s, *userName);
    }
    // The tag tells this write apart within one run of the program and means nothing beyond it.
    return message(u"CDPTimer"_s, data, static_cast<qint64>(qHash(u"Enumeration"_s)));
}

OutboundMessage fdaMessage(const std::optional<QString> &profileName,
                           const std::optional<QString> &corvaneUserName)
{
    QVariantMap data;
    insertIfKnown(data, u"profileName"_s, profileName);
    insertIfKnown(data, u"corvaneUserName"_s, corvaneUserName);
    return message(u"FDAMessage"_s, data, 48);
}

OutboundMessage shutdown(ShutdownAnswer answer)
{
    return message(u"Shutdown"_s,
                   QVariantMap{{u"userResponseForShutdown"_s, QString::number(static_cast<int>(answer))}}, 100);
}

OutboundMessage bandwidthThrottleChanged(const std::optional<QString> &profileName,
                                         const std::optional<QString> &userName)
{
    return message(u"bandwidthThrottleChanged"_s,
                   QVariantMap{{u"IsBandwidthThrottleChanged"_s, u"Changed"_s},
                               {u"profileName"_s, profileName.value_or(u""_s)},
                               {u"userName"_s, userName.value_or(u""_s)}},
                   100);
}

OutboundMessage syncStateChanged()
{
    return message(u"6000"_s, QString(), 6000);
}
} // namespace OutboundMessages
