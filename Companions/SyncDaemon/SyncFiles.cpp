#include "Companions/SyncDaemon/SyncFiles.h"

#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace
{
const QString PauseKey = u"Pause"_s;
const QString ReinitializeKey = u"Re-initialize"_s;

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
    const QVariantMap machine = readPropertyList(m_table.path(u"RootMachineInfoPath"_s)).toMap();
    const QString recorded = machine.value(u"machineId"_s).toString();
    return (recorded.isEmpty() ? QString::fromLatin1(QSysInfo::machineUniqueId()) : recorded) + loginName();
}

QString SyncFiles::daemonPort() const
{
    return u"SyncDM"_s + portEnding();
}

QString SyncFiles::monitorPort() const
{
    return u"SyncMD"_s + portEnding();
}

QString SyncFiles::signedInAccount() const
{
    const QVariant record = readPropertyList(m_table.path(u"LastUserLoginDetailsFilePath"_s));
    return record.toMap().value(u"Username"_s).toString();
}

bool SyncFiles::setEnabled(const QString &account, bool enabled)
{
    if (enabled) {
        const QVariantMap details{{PauseKey, u"0"_s}, {ReinitializeKey, false}};
        if (!writePropertyList(detailsPath(account), details) ||
            !writePropertyList(loggedDetailsPath(), details))
            return false;
    }
    return setValue(m_table.path(u"SyncStateFilePath"_s), account.toLower(), enabled);
}

bool SyncFiles::setPaused(const QString &account, bool paused)
{
    const QString value = paused ? u"1"_s : u"0"_s;
    return setValue(detailsPath(account), PauseKey, value) && setValue(loggedDetailsPath(), PauseKey, value);
}

bool SyncFiles::setReinitializing(bool reinitializing)
{
    return setValue(loggedDetailsPath(), ReinitializeKey, reinitializing);
}

QString SyncFiles::detailsPath(const QString &account) const
{
    return m_table.path(u"SyncDetailsUserPath"_s, {QDir::homePath(), account});
}

QString SyncFiles::loggedDetailsPath() const
{
    return m_table.path(u"LoggedSyncDetailsUserPath"_s);
}
