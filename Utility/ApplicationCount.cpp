#include "Utility/ApplicationCount.h"

#include "Platform/CommandLines.h"
#include "Utility/Paths/PathTable.h"

int isApplicationRunning(const QString &inAppName)
{
    return occurrencesInLines(runningCommandLines(), inAppName,
                              pathValue(QLatin1String("WebManagementExecPath"), {}));
}
