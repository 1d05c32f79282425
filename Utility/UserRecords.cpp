#include "Utility/UserRecords.h"

#include "Platform/KeptFiles.h"
#include "Platform/PropertyList.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{
QVariantMap dictionaryAt(QLatin1StringView key, const QStringList &arguments)
{
    return KeptFiles::dictionary(pathValue(key, arguments)).value_or(QVariantMap());
}

std::optional<QString> textAt(QLatin1StringView key, const QString &user)
{
    return KeptFiles::text(pathValue(key, {user}));
}

bool markerExists(QLatin1StringView key, const std::optional<QString> &user)
{
    return user && QFileInfo::exists(pathValue(key, {*user}));
}

bool anyJob(const QString &user, const std::function<bool(const QVariantMap &job)> &runs)
{
    const QVariantList jobs = dictionaryAt("CurrentJobs"_L1, {}).value(user).toList();
    return std::ranges::any_of(jobs, [&](const QVariant &job) { return runs(job.toMap()); });
}

std::optional<double> number(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return value.toDouble();
    default:
        return std::nullopt;
    }
}
} // namespace

std::optional<QString> UserRecords::getLastLoggedInUser()
{
    const auto record = getActiveUserDetails();
    return record ? PropertyList::textValue(*record, u"Username"_s) : std::nullopt;
}

std::optional<QVariantMap> UserRecords::getActiveUserDetails()
{
    return KeptFiles::dictionary(pathValue("LastUserLoginDetailsFilePath"_L1, {}));
}

bool UserRecords::isDisconnectedUser(const std::optional<QString> &user)
{
    return markerExists("UserDisconnectedInfoPath"_L1, user);
}

bool UserRecords::isTQLUser(const std::optional<QString> &user)
{
    return markerExists("TqlUserDetails"_L1, user);
}

UserRecords::AccountKind UserRecords::accountKind(const QString &plan, const QString &accountType,
                                                  bool isPartner, const QString &planType)
{
    AccountKind kind;
    if (plan == u"Business" || accountType == u"true" || plan == u"PAID" || isPartner)
        kind.isBusiness = true;
    else if (plan == u"Personal")
        kind.isPersonal = true;
    kind.isUnlimited = planType == u"Unlimited";
    return kind;
}

UserRecords::AccountKind UserRecords::getPlan(const QString &user)
{
    const QVariantMap info = dictionaryAt("UserInfoPath"_L1, {user});
    return accountKind(textAt("AccountPlanFilePath"_L1, user).value_or(QString()),
                       accountType(user).value_or(QString()), QNUtility::isCurrentPlanPartner(),
                       PropertyList::textValue(info, u"plan_type"_s).value_or(QString()));
}

std::optional<QString> UserRecords::accountType(const QString &user)
{
    return textAt("AccountTypeFilePath"_L1, user);
}

bool UserRecords::isAnyOperationRunning(const QString &user)
{
    return anyJob(user, [](const QVariantMap &job) {
        const auto startType = PropertyList::intValue(job, u"operationStartType"_s);
        return startType == 0 || startType == 1 || startType == 3;
    });
}

bool UserRecords::isAnyInteractiveBackupOperationRunning(const QString &user)
{
    return anyJob(user, [](const QVariantMap &job) {
        const auto type = PropertyList::intValue(job, u"operationType"_s);
        return PropertyList::intValue(job, u"operationStartType"_s) == 0 && (type == 0 || type == 1);
    });
}

QVariantMap UserRecords::getQuotaDetails(const QString &user)
{
    return repairedQuotaDetails(dictionaryAt("UserDetailsPath"_L1, {user}));
}

QVariantMap UserRecords::repairedQuotaDetails(QVariantMap details)
{
    const QString total = u"TOTALQUOTASIZE"_s;
    const QString used = u"USEDQUOTASIZE"_s;
    const auto isText = [&](const QString &key) {
        return details.value(key).metaType() == QMetaType::fromType<QString>();
    };
    for (const QString &key : {total, used}) {
        if (isText(key))
            continue;
        if (const auto figure = number(details.value(key)))
            details.insert(key, key == used ? std::max(0.0, *figure) : *figure);
        else
            details.remove(key);
    }
    return details;
}
