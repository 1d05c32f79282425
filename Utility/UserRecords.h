#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// What the main application and the daemons leave about the accounts: who is signed in, what kind of account
/// it is, which of its jobs run, how much it stores. Read anew at each call; a missing file counts as no value.
namespace UserRecords
{
/// `Username` of the record of the last sign-in.
[[nodiscard]] std::optional<QString> getLastLoggedInUser();
/// The whole record.
[[nodiscard]] std::optional<QVariantMap> getActiveUserDetails();

/// Whether this machine is disconnected from the account (a marker file).
[[nodiscard]] bool isDisconnectedUser(const std::optional<QString> &user);
/// Whether the account uses the storage engine (a marker file).
[[nodiscard]] bool isTQLUser(const std::optional<QString> &user);

/// What the plan of an account makes of it.
struct AccountKind {
    bool isPersonal = false;
    bool isBusiness = false;
    bool isUnlimited = false;
    friend bool operator==(const AccountKind &, const AccountKind &) = default;
};
/// The rule: all words are compared exactly, and the business test comes first. Empty for a word that is
/// missing.
[[nodiscard]] AccountKind accountKind(const QString &plan, const QString &accountType, bool isPartner,
                                      const QString &planType);
/// The kind of an account from its files.
[[nodiscard]] AccountKind getPlan(const QString &user);
/// The text of the account-type file, such as "true" for a sub-account; none when there is none.
[[nodiscard]] std::optional<QString> accountType(const QString &user);

/// Whether any job of the account runs: `operationStartType` 0, 1 or 3.
[[nodiscard]] bool isAnyOperationRunning(const QString &user);
/// Whether a backup or local backup that the user started in the main application runs for the account.
[[nodiscard]] bool isAnyInteractiveBackupOperationRunning(const QString &user);

/// The stored quota figures: the dictionary of the account's details, in which `TOTALQUOTASIZE` and
/// `USEDQUOTASIZE` are coded text or a double, in mebibytes, where they are stored at all.
[[nodiscard]] QVariantMap getQuotaDetails(const QString &user);
/// The repairs behind it: a number becomes a double, a negative use 0; a figure of any other type is left out,
/// for what nobody knows must not look like a full account.
[[nodiscard]] QVariantMap repairedQuotaDetails(QVariantMap details);
} // namespace UserRecords
