#include "Classes/ACTIVITY_LOGS/LogOperations.h"

#include "Utility/Language/ActivityLogOperations.h"
#include "Utility/Paths/PathTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
struct NamedOperation {
    QLatin1StringView name; ///< in lower case
    int optype = 0;
};

constexpr NamedOperation NamedOperations[] = {
    {"backup"_L1, 1},
    {"network drive backup"_L1, 1},
    {"online backup"_L1, 1},
    {"schedule"_L1, 2},
    {"schedule backup"_L1, 2},
    {"scheduled backup"_L1, 2},
    {"online scheduled backup"_L1, 2},
    {"restore"_L1, 3},
    {"online restore"_L1, 3},
    {"online delete"_L1, 5},
    {"rename"_L1, 6},
    {"continuous data protection"_L1, 7},
    {"archive cleanup"_L1, 8},
    {"putback"_L1, 9},
    {"schedule restore"_L1, 11},
    {"sync"_L1, 12},
    {"local backup"_L1, 13},
    {"schedule local backup"_L1, 14},
    {"local scheduled backup"_L1, 14},
    {"local restore"_L1, 15},
    {"local delete"_L1, 16},
    {"express backup"_L1, 19},
    {"express scheduled backup"_L1, 20},
    {"express restore"_L1, 21},
    {"express delete"_L1, 22},
    {"network and external drive backup"_L1, 23},
    {"network and external drive scheduled backup"_L1, 24},
};

/// None for a number without a name of its own.
const LocalizedText *displayName(qint64 optype)
{
    using namespace ActivityLogOperations;
    switch (optype) {
    case 1:
    case 2:
        return &onlineBackup;
    case 3:
    case 11:
        return &onlineRestore;
    case 4:
        return &search;
    case 5:
    case 18:
        return &onlineDelete;
    case 6:
        return &renaming;
    case 7:
        return &continuousDataProtection;
    case 8:
    case 10:
        return &archiveCleanup;
    case 9:
        return &putback;
    case 12:
        return &synchronization;
    case 13:
    case 14:
        return &localBackup;
    case 15:
        return &localRestore;
    case 16:
        return &localDelete;
    case 19:
    case 20:
        return &expressBackup;
    case 21:
        return &expressRestore;
    case 22:
        return &expressDelete;
    case 23:
    case 24:
        return &networkAndExternalDriveBackup;
    default:
        return nullptr;
    }
}
} // namespace

QString LogOperations::getOptypeForOperationName(const std::optional<QString> &name)
{
    const QString wanted = name.value_or(QString()).toLower();
    const auto row = std::find_if(std::begin(NamedOperations), std::end(NamedOperations),
                                  [&](const NamedOperation &operation) { return operation.name == wanted; });
    constexpr int Sync = 12;
    return QString::number(row == std::end(NamedOperations) ? Sync : row->optype);
}

std::optional<QString> LogOperations::getOperationNamesList(qint64 optype)
{
    const LocalizedText *name = displayName(optype);
    return name ? name->text() : pathValue("ApplicationFullName"_L1);
}

QString LogOperations::operationName(const QString &optype)
{
    bool isNumber = false;
    const qint64 number = optype.toLongLong(&isNumber);
    return isNumber ? getOperationNamesList(number).value_or(QString()) : QString();
}
