#include "Source/Controller/Later.h"

#include "Source/Logger/QNLogger.h"

using namespace Qt::StringLiterals;

void later(Later::Operation operation)
{
    const Later::Seam &seam = operation.seam();
    if (seam.trace == Later::Trace::Line)
        QNLogger::logMonitorTrace(u"Not available in this version: "_s +
                                  QLatin1StringView(seam.operation.data(), qsizetype(seam.operation.size())));
}
