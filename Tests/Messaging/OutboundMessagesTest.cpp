#include "Messaging/OutboundMessages.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace OutboundMessages;

TEST(OutboundMessages, AreWhatTheDaemonKnows)
{
    const std::optional<QString> console = u"ann"_s, user = u"ann@example.org"_s, none;
    using Action = ECoreOperationActionType;
    const std::tuple<const char *, OutboundMessage, qint64, const char *> rows[] = {
        {"ping", pingFromMonitor(pingDetails(console, user, {u"job 1"_s, u"job 2"_s})), 3,
         R"({"data":{"corvaneUserName":"ann@example.org","inProgress":["job 1","job 2"],"profileName":"ann"},"type":"PingFromMonitor"})"},
        {"ping of nobody", pingFromMonitor(pingDetails(none, none, {})), 3,
         R"({"data":{},"type":"PingFromMonitor"})"},
        {"pause", clientCoreOperation({}, Action::Pause, {console, user, false, true}), 100,
         R"({"data":{"actionType":1,"operationStartType":1,"operationType":0,"profileName":"ann","serverType":1,"userName":"ann@example.org"},"type":"clientCoreOperation"})"},
        {"resume of nobody's", clientCoreOperation({}, Action::Resume, {}), 100,
         R"({"data":{"actionType":2,"operationStartType":1,"operationType":0,"serverType":0},"type":"clientCoreOperation"})"},
        {"stop of a restore, with details",
         clientCoreOperation({{u"why"_s, 7}, {u"actionType"_s, 9}}, Action::Stop, {none, user, true, false}),
         100,
         R"({"data":{"actionType":3,"operationStartType":1,"operationType":2,"serverType":0,"userName":"ann@example.org","why":7},"type":"clientCoreOperation"})"},
        {"pause state", setPauseState(), 7, R"({"data":"","type":"SetPauseState"})"},
        {"resume state", setResumeState(), 8, R"({"data":"","type":"SetResumeState"})"},
        {"schedule, online", remoteManageScheduler(console, RemoteBackup::Online), 0,
         R"({"data":{"BackupType":"online","ChannelType":"Scheduler","Profile":"ann"},"type":"RemoteManage"})"},
        {"remote on", remoteManageSwitch(console, user, true), 0,
         R"({"data":{"ChannelType":"EnableDisable","Profile":"ann","UserName":"ann@example.org","remoteStatus":"1"},"type":"RemoteManage"})"},
        {"remote off, no user", remoteManageSwitch(console, none, false), 0,
         R"({"data":{"ChannelType":"EnableDisable","Profile":"ann","remoteStatus":"0"},"type":"RemoteManage"})"},
        {"remote settings", remoteManageSettings(console), 0,
         R"({"data":{"ChannelType":"Settings","Profile":"ann"},"type":"RemoteManage"})"},
        {"full disk access", fdaMessage(console, user), 48,
         R"({"data":{"corvaneUserName":"ann@example.org","profileName":"ann"},"type":"FDAMessage"})"},
        {"shut down", shutdown(ShutdownAnswer::ShutDown), 100,
         R"({"data":{"userResponseForShutdown":"1000"},"type":"Shutdown"})"},
        {"throttle", bandwidthThrottleChanged(console, user), 100,
         R"({"data":{"IsBandwidthThrottleChanged":"Changed","profileName":"ann","userName":"ann@example.org"},"type":"bandwidthThrottleChanged"})"},
        {"throttle of nobody", bandwidthThrottleChanged(none, none), 100,
         R"({"data":{"IsBandwidthThrottleChanged":"Changed","profileName":"","userName":""},"type":"bandwidthThrottleChanged"})"},
        {"sync", syncStateChanged(), 6000, R"({"data":"","type":"6000"})"},
        {"continuous", cdpTimer(console, user), cdpTimer(none, none).tag,
         R"({"data":{"profileName":"ann","userName":"ann@example.org"},"type":"CDPTimer"})"},
        {"continuous of nobody", cdpTimer(console, none), cdpTimer(console, user).tag,
         R"({"data":{},"type":"CDPTimer"})"},
    };
    for (const auto &[name, outbound, tag, json] : rows) {
        EXPECT_EQ(outbound.tag, tag) << name;
        const QJsonDocument document(QJsonObject::fromVariantMap(outbound.message));
        EXPECT_EQ(document.toJson(QJsonDocument::Compact).toStdString(), json) << name;
    }
}
