#pragma once

#include "Companions/Common/PathTable.h"

#include <QDir>
#include <QTemporaryDir>

/// A home folder of its own for one test, with a path table as the product's is made.
class TemporaryHome
{
public:
    TemporaryHome() : m_oldHome(qgetenv("HOME"))
    {
        qputenv("HOME", m_folder.path().toLocal8Bit());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }
    ~TemporaryHome() { qputenv("HOME", m_oldHome); }

    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }

    [[nodiscard]] static PathTable table()
    {
        const auto entry = [](const char *key, const char *value) {
            return std::pair(QString::fromLatin1(key), QVariant(QString::fromLatin1(value)));
        };
        return PathTable(QVariantMap(
            {entry("TCPPortFile", "~/port.plist"), entry("LastUserLoginDetailsFilePath", "~/record.plist"),
             entry("LoginDetailsFilePath", "~/%@/login.plist"), entry("UserDetailsPath", "~/%@/details.plist"),
             entry("UserInfoPath", "~/%@/info.plist"), entry("AccountTypeFilePath", "~/%@/type.txt"),
             entry("AccountPlanFilePath", "~/%@/plan.txt"), entry("TqlUserDetails", "~/%@/tql"),
             entry("RemoteManageInfoPath", "%@/remote.plist"), entry("SyncStateFilePath", "~/sync.plist"),
             entry("SchedulerSettingsFile", "~/schedules.plist"),
             entry("SchedulerStatusInfoPath", "~/status.txt"), entry("CurrentJobs", "~/jobs.plist"),
             entry("ApplicationStatusPath", "~/application.plist"),
             entry("DeamonPreferencePath", "~/preferences.plist"),
             entry("updateBandwidthMacInUseValue", "BandwidthChanged"),
             entry("BandwidthThrottleFilePathForTql", "~/%@/throttle/limit.txt")}));
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_oldHome;
};
