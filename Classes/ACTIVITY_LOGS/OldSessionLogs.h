#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <stop_token>

class UserDefaults;

/// Makes day files of the session logs that lie without records in the operation folders beside the dump
/// folder, so that a list that is empty after an update shows what ran before. A session log with a summary has
/// its record already. The logs are only counted through, in pieces, whatever their size.
///
/// Not for use by two threads at once; the file system is asked at every step.
class OldSessionLogs
{
public:
    static constexpr int Days = 30;        ///< before today
    static constexpr int MostRecords = 51; ///< the newest days come first

    /// What is counted in a session log.
    struct Counts {
        qint64 files = 0;
        qint64 successes = 0;
        bool isScheduled = false;
    };

    OldSessionLogs(QString dumpPath, QDate today, std::stop_token stop);

    /// Writes the day files and tells how many records they hold. A file that stands, or that comes meanwhile,
    /// is left alone; one that can't be written is traced. None after a stop before the last log was counted:
    /// then nothing was written.
    std::optional<int> createOldLogs();
    /// The same, once in the life of the settings: `onlyonce` is 1 from the start of it, and 0 again after a
    /// stop.
    static std::optional<int> createOnce(UserDefaults &defaults, const QString &dumpPath, QDate today,
                                         const std::stop_token &stop);

    /// The operation's counts in one log; none for what is no regular file, can't be read, or after a stop.
    [[nodiscard]] static std::optional<Counts> countsOf(const QString &path, const QString &operation,
                                                        const std::stop_token &stop);
    /// The record of a log, `name` in the folder of `operation`; none where nothing was counted in it or its
    /// name is no date.
    [[nodiscard]] static LogNodePtr record(const QString &path, const QString &name, const QString &operation,
                                           const Counts &counts);

private:
    /// By day, the names of an operation's session logs in their order.
    using Names = std::map<QString, QStringList>;

    [[nodiscard]] Names namesOf(const QString &operation) const;
    [[nodiscard]] LogNodes getNodesForOperation(const QString &operation, const QString &day);
    [[nodiscard]] LogNodes createNodes(const QStringList &names, const QString &operation);
    [[nodiscard]] bool writeToXMLFile(const QString &name, const LogNodes &nodes) const;

    const QString m_dumpPath;
    const QString m_parent;
    const QDate m_today;
    const std::stop_token m_stop;
    QHash<QString, Names> m_names; ///< by operation
    int m_logLimit = 0;            ///< records made so far
};
