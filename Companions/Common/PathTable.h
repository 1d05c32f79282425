#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

/// The product's table of locations and notification names, as the monitor's bundle ships it.
class PathTable
{
public:
    /// Reads the table at `given`; with an empty `given`, the one that lies beside this program in a build tree
    /// or an installation (`share/corvane-monitor/` next to one of the folders above). Empty when there is
    /// none.
    [[nodiscard]] static std::optional<PathTable> load(const QString &given);

    /// The stored value with each "%@" replaced by the next argument; empty for a key that is not in the table.
    [[nodiscard]] QString value(const QString &key, const QStringList &arguments = {}) const;

    /// A text with each "%@" replaced by the next argument.
    [[nodiscard]] static QString filled(QString text, const QStringList &arguments);

    /// As value(), with a leading "~" replaced by the home directory.
    [[nodiscard]] QString path(const QString &key, const QStringList &arguments = {}) const;

    /// Where the table was read, with the product's other tables beside it; empty for one that was made.
    [[nodiscard]] const QString &folder() const { return m_folder; }

    explicit PathTable(QVariantMap entries, QString folder = {});

private:
    QVariantMap m_entries;
    QString m_folder;
};

/// The passwd name of the real user: the owner of scheduled jobs, and the console user.
[[nodiscard]] QString loginName();
