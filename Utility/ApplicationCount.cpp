#include "Utility/ApplicationCount.h"

#include "Platform/CommandLines.h"
#include "Utility/Paths/PathTable.h"

using namespace Qt::StringLiterals;

int isApplicationRunning(const QString &inAppName)
{
    return occurrencesInLines(runningCommandLines(), inAppName, pathValue("WebManagementExecPath"_L1, {}));
}
