#pragma once

#include <QHash>
#include <QString>

#include <functional>
#include <optional>

/// Message ids that the daemons send, turned into display text.
namespace MonitorMessages
{
/// Key to template, such as "T1001-2" to a sentence with two placeholders.
using Table = QHash<QString, QString>;

struct Lookups {
    std::function<QString(const QString &)> localise;
    /// The full path of a file in the sync folder, from what stands behind "::" in a line; none when the folder
    /// is not known. Called only for lines with such a tail.
    std::function<std::optional<QString>(const QString &tail)> resolveSyncPath;
};

/// The display text of `message`: lines of `id||argument||argument::path tail`. Without a table, and for an id
/// that the table doesn't know, the message as it is; so plain type names pass through. What is over the limits
/// of a shown text is left out.
[[nodiscard]] QString getMessageForID(const QString &message, const std::optional<Table> &table,
                                      const Lookups &lookups);

/// The table beside the program, loaded at first use; none while it can't be read.
[[nodiscard]] std::optional<Table> bundleTable();
} // namespace MonitorMessages
