#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// Removes the files that belong to records, and no others. What a record names comes from outside: a file goes
/// only when it is a regular one, no link, and its folder, links resolved, is one of the log folders or below
/// one. Day files never go with a record that names them.
///
/// One object serves one deletion: it looks into each folder once. Any thread, one at a time.
class LogFileRemoval
{
public:
    /// `dumpFolders` hold the day files, `folders` the rest; paths that aren't absolute or name nothing count
    /// as no folder.
    LogFileRemoval(const QStringList &dumpFolders, const QStringList &folders);

    /// The files of a record in the order of their removal.
    [[nodiscard]] static QStringList filesOf(const QString &logfile);

    /// Removes those of them that are there. A failure is traced, and the next is tried.
    void remove(const QString &logfile);

private:
    /// A folder as records name it.
    struct Place {
        QString path; ///< links resolved; empty for a folder that isn't ours
        bool holdsDayFiles = false;
        /// The session logs that something in it belongs to; absent where that can't be told.
        std::optional<QSet<QString>> logs;
    };

    [[nodiscard]] Place placeOf(const QString &folder) const;
    [[nodiscard]] static std::optional<QSet<QString>> logsIn(const QString &folder);

    QStringList m_dumpFolders;
    QStringList m_folders;
    QHash<QString, Place> m_places;
};
