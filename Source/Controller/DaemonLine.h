#pragma once

#include "Messaging/DaemonChannel.h"
#include "Platform/FileWatch.h"
#include "Platform/StampedFile.h"
#include "Source/Logger/TraceSeries.h"

#include <QString>

#include <memory>
#include <optional>

/// The monitor's end of the channel to the backup daemon: the file in which that publishes its port, what the
/// trace says of the channel, and whether the daemon's orders are obeyed. Main thread only.
class DaemonLine
{
public:
    /// `owner` is told what the channel brings.
    DaemonLine(DaemonChannelOwner &owner, Clock &clock, PeerOwners peers);

    /// Looks for the daemon from now on.
    void start();
    /// In each 10-second pass: finds what no event has told, and ends the series of like trace lines.
    void look();
    [[nodiscard]] DaemonChannel &channel() { return *mTCPWithDaemon; }
    /// Why no order of that message's sender may be run; none where it may. A message comes by this channel, or
    /// by a port that anybody in the session may write to.
    [[nodiscard]] std::optional<QString> reasonToRefuse(bool cameByChannel) const;
    void refuse(const QString &reason) { m_trace.note(reason); }

    void connected();
    void disconnected();
    void refusedPayload(const QString &reason);

private:
    [[nodiscard]] std::optional<qint64> daemonPort();
    [[nodiscard]] static std::shared_ptr<const qint64> decodePortFile(const QString &path);

    TraceSeries m_trace;
    FileMemo<qint64> m_portFile{decodePortFile};
    bool m_isConnected = false;
    std::unique_ptr<DaemonChannel> mTCPWithDaemon;
    std::unique_ptr<FileWatch> m_portFileWatch;
};
