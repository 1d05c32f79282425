#pragma once

#include "Tests/Support/TemporaryHome.h"

#include <QByteArray>

/// A scheduled job for the monitor to watch: its files, and its reports from a socket on the loopback device.
namespace RunningJob
{
inline constexpr qsizetype ReportBytes = 700;

/// One report with its length in front, ReportBytes in all but for that. Most figures of two neighbours differ;
/// the percentage grows with every twentieth.
[[nodiscard]] QByteArray frame(int number);

/// Sends all; gives up when the other end has gone.
void sendAll(int fd, const QByteArray &bytes);

/// A socket that listens on a free port.
[[nodiscard]] int listenOnLoopback(quint16 *port);

/// The files of a signed-in user whose job runs and whose daemon listens there.
void writeFiles(const TemporaryHome &home, quint16 port);
} // namespace RunningJob
