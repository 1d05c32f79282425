#pragma once

#include "Utility/UserRecords.h"

#include <QString>
#include <QVariantMap>

#include <optional>

/// Who is signed in, as the files tell it and as it has been announced, and what kind of account that is. Main
/// thread only.
class Account
{
public:
    /// Takes who was signed in before this start.
    void takeUserRecord();

    /// @name The record of the last sign-in
    /// @{
    [[nodiscard]] static bool recordExists();
    /// Whether it says who is signed in: it stands, and its account has not announced a sign-out.
    [[nodiscard]] bool recordCounts() const { return !hasSignedOut() && recordExists(); }
    /// The record as it is now; none without one, and once its account has signed out.
    [[nodiscard]] std::optional<QVariantMap> activeUserDetails() const;
    [[nodiscard]] QString signedInUser() const; ///< `Username` of that record, empty without one
    [[nodiscard]] bool isSignedIn() const { return !signedInUser().isEmpty(); }
    /// Whether the account uses the storage engine.
    [[nodiscard]] static bool isTQL();
    /// @}

    /// @name The record as a pass has read it
    /// @{
    void readDetails();
    [[nodiscard]] const QVariantMap &details() const { return mUserDetails; }
    [[nodiscard]] QString userNameOfDetails() const; ///< `Username` there, empty without one
    /// Sets the type of account that the whole program goes by, from `dedup` there.
    void takeAccountType() const;
    /// @}

    /// @name Sign-in and sign-out
    /// @{
    void signedIn();  ///< has been announced; what was read last is of the account now
    void signedOut(); ///< the same of the record's account
    /// A record that has gone ends the sign-out of its account: one that comes is a new sign-in.
    void lookForSignIn();
    enum class Unannounced { Nothing, SignIn, SignOut };
    /// What the record says beside the account that is shown, and nobody has announced.
    [[nodiscard]] Unannounced unannouncedChange() const;
    /// The account that menu and status show; none for nobody.
    void setShownUser(std::optional<QString> user) { mPreviouslyLoggedInUser = std::move(user); }
    [[nodiscard]] QString shownUser() const { return mPreviouslyLoggedInUser.value_or(QString()); }
    /// The last name read from the record at a start or a sign-in, else the account linked before.
    [[nodiscard]] const std::optional<QString> &lastLoggedInUser() const { return m_lastLoggedInUser; }
    /// @}

    /// Takes the kind of account from that user's files.
    void getPlan(const QString &user) { m_kind = UserRecords::getPlan(user); }
    /// Whether its plan never warns of a full account.
    [[nodiscard]] bool planNeverWarns() const { return m_kind.isBusiness || m_kind.isPersonal; }

private:
    [[nodiscard]] static std::optional<QString> linkedAccount(); ///< last linked to the console user
    [[nodiscard]] bool hasSignedOut() const;

    std::optional<QString> m_lastLoggedInUser;
    std::optional<QString> mPreviouslyLoggedInUser;
    std::optional<QString> m_signedOutUser; ///< has announced its sign-out, and the record may still name it
    QVariantMap mUserDetails;
    UserRecords::AccountKind m_kind;
};
