#include "Source/Logger/QNLogger.h"

#include "Platform/Home.h"
#include "Source/Logger/TraceFile.h"
#include "Source/Logger/TraceLine.h"
#include "Utility/Paths/PathTable.h"

using namespace Qt::StringLiterals;

bool QNLogger::logMonitorTrace(const std::optional<QString> &message)
{
    const QString path = standardizedPath(pathValue("MonitorTraceFilePath"_L1));
    if (!message) {
        TraceFile::clearLogs(path);
        return false;
    }
    const QString line = TraceLine::timestamp() + u" : "_s + *message + u" \n"_s;
    // Never destroyed: threads may trace until the very end of the process.
    static auto &file = *new TraceFile;
    return file.append(path, TraceLine::namingThisProduct(line));
}
