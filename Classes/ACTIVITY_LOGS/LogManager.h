#pragma once

#include "Classes/ACTIVITY_LOGS/LogListing.h"
#include "Classes/ACTIVITY_LOGS/LogMaster.h"
#include "Platform/Clock.h"
#include "Platform/DispatchQueue.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class UserDefaults;

/// The log store: finds the day files of a folder, reads them in the background, hands their records to its
/// owner, keeps what was read, and deletes records. Main thread only; files are touched on a queue of its own.
///
/// A fetch cancels the one before: what that had still to hand over is dropped. A deletion that was begun is
/// carried out, also when the store is gone.
class LogManager
{
public:
    enum class Logs {
        Current, ///< the folder of LogsDumpPath
        Archived ///< the folder of LogsDumpOldPath
    };

    /// The records of a deletion that still stand in their files: those could not be rewritten, which is
    /// traced.
    using DeletionEnded = std::function<void(const LogNodes &kept)>;
    /// How many records were rebuilt.
    using OldLogsEnded = std::function<void(int records)>;

    /// `owner` holds the store, and outlives it.
    LogManager(LogMaster &owner, const Clock &clock, Logs logs = Logs::Current);
    ~LogManager();
    LogManager(const LogManager &) = delete;
    LogManager &operator=(const LogManager &) = delete;

    /// @name Reading. Each ends with LogMaster::readEnded().
    /// @{

    /// The newest days, as many as a page holds; the others wait in unparsedLogs. While a deletion from the web
    /// is ordered: fetchAndDeleteAllLogs().
    void fetchAllLogs();
    /// A further page of the same read. Pages count from 1; nothing happens when no day waits.
    void fetchLogsForPage(int page);
    /// Every calendar day of the period, both ends included. Without an end no day is read.
    void fetchLogs(QDate from, std::optional<QDate> to);
    /// All days at once.
    void fetchAndDeleteAllLogs();
    /// The day's three files, those that are there: of continuous protection, of sync, of the rest. Part of the
    /// read before, if there is one.
    void parseXmlFile(const QString &name);
    /// @}

    /// @name Deleting
    /// @{

    /// Deletes the records with the files that belong to them, one rewrite for each day file; the last record
    /// of a day takes the file with it. The day is that of the record's `dayKey`, whether mLogData holds it or
    /// not; a key that names no file in the dump folder is passed over. `ended` is called on the main thread
    /// unless the store is gone by then. The end of the program waits for it a moment, and traces what is left.
    void deleteNodes(LogNodes nodes, DeletionEnded ended = {});
    void deleteNode(const LogNodePtr &node, DeletionEnded ended = {}) { deleteNodes({node}, std::move(ended)); }
    /// @}

    /// Makes records of the session logs of the last 30 days, on a thread of its own: once in the life of the
    /// settings (`onlyonce`), and only while there is no day file. It goes on without the store; the end of the
    /// program stops it, and the next start begins it anew. `ended` is called on the main thread when that
    /// thread has done so, unless the store is gone by then; it is time to read the list anew. `defaults`
    /// outlives the process's threads.
    void createOldLogs(UserDefaults &defaults, OldLogsEnded ended);

    [[nodiscard]] const QString &dumpPath() const { return mLogDumpPath; }

    static constexpr int logsPerPage = 20;

    std::optional<QString> currentLog;     ///< day key of the file that was handed over last
    bool isParsed = false;                 ///< that file was read, and not taken from mLogData
    int logLimit = 0;                      ///< records rebuilt by createOldLogs()
    int toalParseFileCount = 0;            ///< files since the last fetch began
    int currentParseCount = 0;             ///< of them, those that the owner has counted
    int currentPage = 1;                   ///< of the paged fetch; the owner counts it up
    std::vector<UnparsedLog> unparsedLogs; ///< days still to read in the paged fetch, newest first
    QHash<QString, LogNodes> mLogData;     ///< by day key, what the owner keeps of the files that were read

private:
    struct Read;
    struct Plan;
    struct Deletion;
    /// Records of one day file.
    struct Day {
        QString key;
        LogNodes nodes;
    };

    void beginRead();
    void plan(std::function<Plan()> work);
    void schedule(Plan &plan);
    void readFile(const QString &key, const QString &today);
    void handOver(const std::optional<QString> &key, bool wasParsed, const std::optional<LogNodes> &list);
    void stepDone(LogReadEnd end);
    [[nodiscard]] std::vector<Day> takeFromCache(LogNodes nodes);
    void forget(const Day &day);

    LogMaster &master;
    const Clock &m_clock;
    const QString mLogDumpPath; ///< no absolute path where the path table has none: a folder without files
    const DispatchQueue mQueue;
    std::shared_ptr<Read> m_read;         ///< the one that counts
    std::shared_ptr<LogManager *> m_self; ///< for what comes late; null in it once the store is gone
    bool m_askedForOldLogs = false;
};
