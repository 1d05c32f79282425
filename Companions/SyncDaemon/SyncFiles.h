#pragma once

#include "Companions/Common/PathTable.h"

#include <QVariantMap>

/// The files in which the product keeps who syncs and how it stands. All writes replace a file as a whole; one
/// that fails returns false and leaves the old file.
class SyncFiles
{
public:
    explicit SyncFiles(PathTable table);

    /// Names of the two ports; both sides build them from the machine's id and the login name.
    [[nodiscard]] QString daemonPort() const;
    [[nodiscard]] QString monitorPort() const;

    /// `Username` of the user record; empty when nobody is signed in.
    [[nodiscard]] QString signedInAccount() const;

    /// Marks the account as syncing, or not; on the way in it gets its details, neither paused nor
    /// re-initialising.
    bool setEnabled(const QString &account, bool enabled);

    /// `Pause` in the account's details and in those of the logged-in user.
    bool setPaused(const QString &account, bool paused);

    /// `Re-initialize` in the details of the logged-in user.
    bool setReinitializing(bool reinitializing);

private:
    [[nodiscard]] QString portEnding() const;
    [[nodiscard]] QString detailsPath(const QString &account) const;
    [[nodiscard]] QString loggedDetailsPath() const;

    PathTable m_table;
};
