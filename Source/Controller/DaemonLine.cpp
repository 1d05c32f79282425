#include "Source/Controller/DaemonLine.h"

#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Paths/PathTable.h"

#include <utility>

using namespace Qt::StringLiterals;

DaemonLine::DaemonLine(DaemonChannelOwner &owner, Clock &clock, PeerOwners peers)
    : m_trace([](const QString &line) { QNLogger::logMonitorTrace(line); }),
      mTCPWithDaemon(std::make_unique<DaemonChannel>(
          owner, clock, [this] { return daemonPort(); }, std::move(peers)))
{
}

void DaemonLine::start()
{
    // Watched before it is read, so that no change falls between the two.
    m_portFileWatch = std::make_unique<FileWatch>(pathValue("TCPPortFile"_L1, {}),
                                                  [this] { mTCPWithDaemon->portFileDidChange(); });
    mTCPWithDaemon->start();
}

void DaemonLine::look()
{
    m_trace.pass();
    if (!m_portFileWatch)
        return;
    m_portFileWatch->refresh();
    mTCPWithDaemon->look();
}

std::optional<QString> DaemonLine::reasonToRefuse(bool cameByChannel) const
{
    if (cameByChannel && !mTCPWithDaemon->isPeerKnown())
        return u"the system doesn't tell who sent it"_s;
    if (!cameByChannel || !mTCPWithDaemon->isPeerTrusted())
        return u"whoever sent it is neither root's daemon nor this user's"_s;
    return std::nullopt;
}

void DaemonLine::connected()
{
    m_isConnected = true;
    m_trace.note(u"Connected to the backup daemon"_s);
}

void DaemonLine::disconnected()
{
    // Failed attempts come here as well.
    if (std::exchange(m_isConnected, false))
        m_trace.note(u"Lost the connection to the backup daemon"_s);
}

void DaemonLine::refusedPayload(const QString &reason)
{
    m_trace.note(u"A message of the backup daemon was skipped"_s, u": "_s + reason);
}

std::optional<qint64> DaemonLine::daemonPort()
{
    // Asked for at each attempt while the daemon is away, so the file is read only when it has changed.
    const auto port = m_portFile.read(pathValue("TCPPortFile"_L1, {}));
    if (!port) {
        m_trace.note(u"The backup daemon has published no port"_s);
        return std::nullopt;
    }
    if (*port < 1 || *port > 65535)
        m_trace.note(u"The backup daemon has published a port that there is not"_s, u": %1"_s.arg(*port));
    return *port;
}

std::shared_ptr<const qint64> DaemonLine::decodePortFile(const QString &path)
{
    const auto file = PropertyList::readDictionary(path);
    const auto port = file ? PropertyList::intValue(*file, u"port"_s) : std::nullopt;
    return port ? std::make_shared<const qint64>(*port) : nullptr;
}
