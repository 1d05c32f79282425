#pragma once

#include "Companions/BackupDaemon/LogBook.h"

/// Years of activity logs, as a daemon that has run all that time would have left them; and what daemons of
/// older versions left.
class LogHistory
{
public:
    static constexpr int ThreeYears = 1'100; ///< days
    static constexpr int RecordsInFile = 30;
    static constexpr int DaysWithSessionLogs = 3; ///< older ones have been tidied away

    explicit LogHistory(PathTable table);

    /// What was written. `written` is false when something could not be.
    struct Outcome {
        bool written = true;
        int files = 0;
        int records = 0;
    };

    /// The three day files of each of the last `days` days, today the last, for `account` and others. Files of
    /// these days are replaced. No record lies behind `now`.
    [[nodiscard]] Outcome write(const LogBook &logs, const QString &account, int days,
                                const QDateTime &now) const;

    /// Takes all day files and session logs away, those of the archive too. False when something is left.
    [[nodiscard]] bool clear() const;

    /// Session logs of the last 30 days without summary and record, `count` of them over the five operations.
    [[nodiscard]] Outcome writeOldLogs(const LogBook &logs, const QString &account, int count,
                                       const QDateTime &now) const;

    /// Entries of the layout before there were folders for the operations, in the folders of the session logs
    /// and, where there is one, of the archive.
    [[nodiscard]] Outcome writeOldLayout(const QString &account, const QDateTime &now) const;

    /// Puts an archive of the months before `now` in its place and says that it may be shown; or that it may
    /// not be, which leaves the files.
    [[nodiscard]] Outcome showArchive(bool shown, const QString &account, const QDateTime &now) const;

private:
    PathTable m_table;
};

/// Replaces a file, with its folder where needed, and does not wait for the disk: thousands take seconds. False
/// on failure.
[[nodiscard]] bool writeQuickly(const QString &path, const QByteArray &bytes);
