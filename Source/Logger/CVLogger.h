#pragma once

#include "Platform/Clock.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <set>
#include <source_location>
#include <vector>

enum class LogType { success, error, warning, information, alert, plain };

/// Where an entry came from.
struct TraceInfo {
    QString fileName; ///< as the compiler gives it
    QString functionName;
    int lineNumber = 0;
};

/// One tracked entry of CVLogger.
struct PLog {
    QString id;
    QString details;
    LogType logType = LogType::plain;
    QDateTime time;
    TraceInfo traceInfo;
    QString printableLog;
    QString printableTrace; ///< empty where the entry was made without a trace
};

/// A logger on the console for people who work on the program, with levels, titles and symbols. As shipped
/// (`printOnlyIfDebugMode`) every call is reduced to one fixed line, so that no call site leaves a record.
class CVLogger
{
public:
    /// Where finished lines go: the standard output, or a test's list.
    using Sink = std::function<void(const QString &line)>;
    using Completion = std::function<void(const QString &id, const QString &details, const QString &fileName,
                                          int lineNumber, const QString &functionName)>;
    using Where = std::source_location;

    struct Options {
        bool plainLog = false;
        bool addLineAfterEachPrint = false; ///< a rule of 88 underscores after each entry
        bool capitalizeTitles = false;
        bool capitalizeDetails = false;
        bool printOnlyIfDebugMode = true;
        bool hideLogsTime = false;
        bool disable = false;
        bool keepTracking = false;
        bool keepAutoTracing = true;
        Completion onLogCompletion;
        QStringList filterFiles;      ///< last path components of source files that are skipped
        std::set<LogType> filterLogs; ///< when not empty, the only types that pass
        QString logDateFormat = QStringLiteral("MM-dd-yyyy HH: mm: ss");
    };

    /// The notification of the process after each tracked entry.
    static constexpr char LogAddedNotification[] = "notificationPrinterLogAdded";

    explicit CVLogger(Sink sink, const Clock &clock);

    /// The logger of the process, on standard output.
    static CVLogger &log();

    Options options;

    void success(const QString &id, const QString &details, Where where = Where::current());
    void error(const QString &id, const QString &details, Where where = Where::current());
    void warning(const QString &id, const QString &details, Where where = Where::current());
    void information(const QString &id, const QString &details, Where where = Where::current());
    void alert(const QString &id, const QString &details, Where where = Where::current());
    void success(const QString &details, Where where = Where::current());
    void error(const QString &details, Where where = Where::current());
    void warning(const QString &details, Where where = Where::current());
    void information(const QString &details, Where where = Where::current());
    void alert(const QString &details, Where where = Where::current());

    void show(const QString &id, const QString &details, LogType type, Where where = Where::current());
    /// As show(), on the main thread, after a time. The logger must outlive it, as log() does.
    void showInFuture(const QString &id, const QString &details, LogType type, std::chrono::milliseconds after,
                      Where where = Where::current());
    /// Prints where the caller stands.
    void trace(Where where = Where::current());

    /// Tracked entries, oldest first; of the given types only, where types are given.
    [[nodiscard]] std::vector<PLog> getAllLogs(const std::set<LogType> &filterLogTypes = {}) const;
    /// Prints the tracked entries, or a sentence that tells that there are none.
    void all(bool showTrace, const std::set<LogType> &filterLogTypes = {}) const;

    void hideEmojis() { m_emojis = false; }
    void hideTitles() { m_titles = false; }

private:
    enum class Origin { Caller, Logger };

    void enter(const QString &id, const QString &details, LogType type, const Where &where, Origin origin);
    [[nodiscard]] bool passes(LogType type, const QString &file) const;
    [[nodiscard]] QString fullForm(const QString &id, const QString &details, LogType type) const;
    [[nodiscard]] QString plainForm(const QString &id, const QString &details) const;
    [[nodiscard]] QString time() const;

    Sink m_sink;
    const Clock &m_clock;
    bool m_emojis = true;
    bool m_titles = true;
    std::vector<PLog> m_arrayLogs;
};
