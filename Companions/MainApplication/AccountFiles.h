#pragma once

#include "Companions/Common/PathTable.h"

#include <QString>

/// What the application knows of an account when its owner signs in.
struct Account {
    QString name;
    QString plan = QStringLiteral("Personal"); ///< plan word: `Business`, `PAID`, `Personal`
    QString planType = QStringLiteral("Standard");
    bool isSubAccount = false;
    bool usesEngine = true;
    bool deduplicates = true;
    double usedMebibytes = 38'400;
    double totalMebibytes = 102'400;
};

/// The text with every UTF-16 unit doubled: the reversible coding of stored figures and credentials.
[[nodiscard]] QString codedText(const QString &text);

/// The user record and the files of one account. All writes replace a file as a whole.
class AccountFiles
{
public:
    explicit AccountFiles(PathTable table);

    /// Writes every file of the account, and the user record last: it is what makes the account the present
    /// one. False when any of them could not be written.
    bool signIn(const Account &account);

    /// Takes the user record away; the files of the account stay for the next sign-in.
    bool signOut();

    /// `Username` of the user record; empty when nobody is signed in.
    [[nodiscard]] QString signedInAccount() const;

    /// Changes the stored quota figures and nothing else of the account's details.
    bool setQuota(const QString &account, double usedMebibytes, double totalMebibytes);

    /// Changes the plan word, in the record too where the account is signed in.
    bool setPlan(const QString &account, const QString &plan);

    /// Says whether another account pays for this one.
    bool setSubAccount(const QString &account, bool isSubAccount);

    /// Says whether the account uses the storage engine.
    bool setEngineUser(const QString &account, bool usesEngine);

    /// Says whether this installation is one without protection and remote management.
    bool setThinClient(bool isThinClient);

private:
    [[nodiscard]] bool writeDetails(const Account &account);

    PathTable m_table;
};
