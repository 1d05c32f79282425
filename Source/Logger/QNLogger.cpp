#include "Source/Logger/QNLogger.h"

#include "Platform/Home.h"
#include "Source/Logger/TraceFile.h"
#include "Source/Logger/TraceLine.h"
#include "Utility/Paths/PathTable.h"

void QNLogger::logMonitorTrace(const std::optional<QString> &message)
{
    const QString path = standardizedPath(pathValue(QLatin1String("MonitorTraceFilePath")));
    if (message) {
        const QString line = TraceLine::timestamp() + QStringLiteral(" : ") + *message + QStringLiteral(" \n");
        TraceFile::write(path, TraceLine::namingThisProduct(line));
    }
    TraceFile::clearLogs(path);
}
