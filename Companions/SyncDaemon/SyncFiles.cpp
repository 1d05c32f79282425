#include "Companions/SyncDaemon/SyncFiles.h"

#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QSysInfo>

namespace
{
const QString PauseKey = QStringLiteral("Pause");
const QString ReinitializeKey = QStringLiteral("Re-initialize");

bool setValue(const QString &path, const QString &key, const QVariant &value)
{
    QVariantMap tree = readPropertyList(path).toMap();
    tree.insert(key, value);
    return writePropertyList(path, tree);
}
} // namespace

SyncFiles::SyncFiles(PathTable table) : m_table(std::move(table))
{
}

QString SyncFiles::portEnding() const
{
    const QVariantMap machine = readPropertyList(m_table.path(QStringLiteral("RootMachineInfoPath"))).toMap();
    const QString recorded = machine.value(QStringLiteral("machineId")).toString();
    return (recorded.isEmpty() ? QString::fromLatin1(QSysInfo::machineUniqueId()) : recorded) + loginName();
}

QString SyncFiles::daemonPort() const
{
    return QStringLiteral("SyncDM") + portEnding();
}

QString SyncFiles::monitorPort() const
{
    return QStringLiteral("SyncMD") + portEnding();
}

QString SyncFiles::signedInAccount() const
{
    const QVariant record = readPropertyList(m_table.path(QStringLiteral("LastUserLoginDetailsFilePath")));
    return record.toMap().value(QStringLiteral("Username")).toString();
}

bool SyncFiles::setEnabled(const QString &account, bool enabled)
{
    if (enabled) {
        const QVariantMap details{{PauseKey, QStringLiteral("0")}, {ReinitializeKey, false}};
        if (!writePropertyList(detailsPath(account), details) ||
            !writePropertyList(loggedDetailsPath(), details))
            return false;
    }
    return setValue(m_table.path(QStringLiteral("SyncStateFilePath")), account.toLower(), enabled);
}

bool SyncFiles::setPaused(const QString &account, bool paused)
{
    const QString value = paused ? QStringLiteral("1") : QStringLiteral("0");
    return setValue(detailsPath(account), PauseKey, value) && setValue(loggedDetailsPath(), PauseKey, value);
}

bool SyncFiles::setReinitializing(bool reinitializing)
{
    return setValue(loggedDetailsPath(), ReinitializeKey, reinitializing);
}

QString SyncFiles::detailsPath(const QString &account) const
{
    return m_table.path(QStringLiteral("SyncDetailsUserPath"), {QDir::homePath(), account});
}

QString SyncFiles::loggedDetailsPath() const
{
    return m_table.path(QStringLiteral("LoggedSyncDetailsUserPath"));
}
