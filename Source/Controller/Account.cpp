#include "Source/Controller/Account.h"

#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/Paths/UserType.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
/// The name, or where there is none the account linked before.
std::optional<QString> orLinked(std::optional<QString> name, const std::optional<QString> &linked)
{
    if (name && !name->isEmpty())
        return name;
    return linked;
}
} // namespace

void Account::takeUserRecord()
{
    m_lastLoggedInUser = orLinked(UserRecords::getLastLoggedInUser(), linkedAccount());
    mPreviouslyLoggedInUser = m_lastLoggedInUser;
    if (recordExists())
        takeAccountType();
    getPlan(signedInUser());
}

bool Account::recordExists()
{
    return QFileInfo::exists(pathValue("LastUserLoginDetailsFilePath"_L1, {}));
}

std::optional<QVariantMap> Account::activeUserDetails() const
{
    return hasSignedOut() ? std::nullopt : UserRecords::getActiveUserDetails();
}

QString Account::signedInUser() const
{
    const auto record = activeUserDetails();
    return record ? PropertyList::textValue(*record, u"Username"_s).value_or(QString()) : QString();
}

bool Account::isTQL()
{
    const auto record = UserRecords::getActiveUserDetails();
    return record && PropertyList::boolValue(*record, u"isTQL"_s).value_or(false);
}

void Account::readDetails()
{
    mUserDetails = activeUserDetails().value_or(QVariantMap());
}

QString Account::userNameOfDetails() const
{
    return PropertyList::textValue(mUserDetails, u"Username"_s).value_or(QString());
}

void Account::takeAccountType() const
{
    const auto dedup = PropertyList::textValue(mUserDetails, u"dedup"_s);
    QNUtility::userType = dedup == u"on"_s ? EUserType::Dedup : EUserType::Other;
}

void Account::signedIn()
{
    m_signedOutUser.reset();
    readDetails();
    m_lastLoggedInUser = orLinked(PropertyList::textValue(mUserDetails, u"Username"_s), linkedAccount());
}

void Account::signedOut()
{
    // The record may stand a while longer; until it names somebody else, or a sign-in is announced, it counts
    // for nobody.
    m_signedOutUser = UserRecords::getLastLoggedInUser();
    mPreviouslyLoggedInUser.reset();
}

bool Account::hasSignedOut() const
{
    return m_signedOutUser && UserRecords::getLastLoggedInUser() == m_signedOutUser;
}

void Account::lookForSignIn()
{
    if (!recordExists())
        m_signedOutUser.reset();
}

Account::Unannounced Account::unannouncedChange() const
{
    const QString shown = shownUser();
    if (!shown.isEmpty() && !recordExists())
        return Unannounced::SignOut;
    const QString user = signedInUser();
    return user.isEmpty() || user == shown ? Unannounced::Nothing : Unannounced::SignIn;
}

std::optional<QString> Account::linkedAccount()
{
    const auto linked = QNUtility::isAnyUserDeletedForProfile(::consoleUser().value_or(QString()));
    return linked ? PropertyList::textValue(*linked, u"cname"_s) : std::nullopt;
}
