#pragma once

#include "Utility/Paths/UserType.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// The table of all locations, names and notification names: one flat list of keys and texts, loaded at first
/// use and kept. A load that fails is tried again at the next look-up. Safe from any thread.
class PathTable
{
public:
    using Entries = QHash<QString, QString>;
    using Loader = std::function<std::optional<Entries>()>;

    explicit PathTable(Loader load);

    /// The value of `key`, or the key itself where the table has no text for it: such a path exists nowhere, so
    /// the caller's own test of the file takes over. For ExecuterPathTQL of a deduplicating account the value
    /// of ExecuterPathDedupTQL.
    [[nodiscard]] QString value(const QString &key, EUserType userType) const;

    /// Whether an account of that name has files: AccountNames::isPathComponent(), and none of the product's
    /// own names.
    [[nodiscard]] bool hasFiles(const QString &account) const;

private:
    struct Content {
        Entries entries;
        QSet<QString> ownNames;
    };
    [[nodiscard]] std::shared_ptr<const Content> content() const;

    Loader m_load;
    mutable std::mutex m_loading;
    mutable std::shared_ptr<const Content> m_content; // set once, under the lock
    mutable std::atomic<bool> m_loaded = false;
};

/// Looks a key up in the program's own table (`Localizable.plist` of the bundle). None only for no key.
[[nodiscard]] std::optional<QString> qnLocalizedString(const std::optional<QString> &key);

/// As above for a key that is given as a literal.
[[nodiscard]] QString pathValue(QLatin1StringView key);

/// As pathValue(), with the placeholders filled in and the result standardised as a path. The last argument is
/// an account name, save for the keys whose placeholder is something else; empty where that name forms no path.
[[nodiscard]] QString pathValue(QLatin1StringView key, const QStringList &arguments);

/// The same for a value of the table that was looked up before; every path of an account is formed here. A
/// format without a placeholder is the same file for all accounts, and needs no name.
[[nodiscard]] QString accountPath(const QString &format, const QStringList &arguments);
