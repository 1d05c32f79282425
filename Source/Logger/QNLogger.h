#pragma once

#include <QString>

#include <optional>

/// The monitor's general trace, in the file of MonitorTraceFilePath.
class QNLogger
{
public:
    /// Appends one line and empties the file when it is over its limit, the new line with it. With no message
    /// the file is only held to its limit. Runs on the calling thread, from any thread. False when no line was
    /// written, which nobody needs to look at.
    static bool logMonitorTrace(const std::optional<QString> &message);
};
