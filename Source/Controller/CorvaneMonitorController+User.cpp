// Who is signed in, as the files tell it, and what kind of account that is.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/PropertyList.h"

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
