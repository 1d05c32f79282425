// Who is signed in, as the files tell it, and what kind of account that is.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/Bundle.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Utility/QNUtility.h"

QString CorvaneMonitorController::userNameOfDetails() const
{
    return PropertyList::textValue(mUserDetails, QStringLiteral("Username")).value_or(QString());
}

QString CorvaneMonitorController::signedInUser() const
{
    return UserRecords::getLastLoggedInUser().value_or(QString());
}

void CorvaneMonitorController::getPlan(const QString &user)
{
    const UserRecords::AccountKind kind = UserRecords::getPlan(user);
    mIsPersonalUser = kind.isPersonal;
    mIsBusinessUser = kind.isBusiness;
    mIsUnlimitedUser = kind.isUnlimited;
}

void CorvaneMonitorController::getPlanForUser()
{
    getPlan(signedInUser());
}

std::optional<QString> CorvaneMonitorController::linkedAccount()
{
    const auto linked = QNUtility::isAnyUserDeletedForProfile(::consoleUser().value_or(QString()));
    return linked ? PropertyList::textValue(*linked, QStringLiteral("cname")) : std::nullopt;
}

std::optional<QString> CorvaneMonitorController::deploymentValue(const QString &key)
{
    const auto deployment =
        PropertyList::readDictionary(Bundle::main().resource(QStringLiteral("Deployment.plist")));
    return deployment ? PropertyList::textValue(*deployment, key) : std::nullopt;
}
