#include "Source/Logger/QNLogger.h"

#include "Platform/Home.h"
#include "Source/Logger/TraceFile.h"
#include "Source/Logger/TraceLine.h"
#include "Utility/Paths/PathTable.h"

void QNLogger::logMonitorTrace(const std::optional<QString> &message)
{
    const QString path = standardizedPath(pathValue(QLatin1String("MonitorTraceFilePath")));
    if (!message) {
        TraceFile::clearLogs(path);
        return;
    }
    const QString line = TraceLine::timestamp() + QStringLiteral(" : ") + *message + QStringLiteral(" \n");
    TraceFile::append(path, TraceLine::namingThisProduct(line));
}
