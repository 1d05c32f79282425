#pragma once

#include "Companions/BackupDaemon/BackupJob.h"
#include "Companions/BackupDaemon/DaemonFiles.h"
#include "Companions/BackupDaemon/DaemonServer.h"
#include "Companions/BackupDaemon/LogBook.h"
#include "Companions/Common/Commands.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

/// The stand-in for the backup daemon: takes the monitor's messages and the console's commands, runs one job at
/// a time, keeps the shared files current and reports.
class BackupDaemon : public QObject
{
    Q_OBJECT

public:
    BackupDaemon(PathTable table, QObject *parent = nullptr);

    /// Puts stale files right, listens and publishes the port. Says on standard output what went wrong.
    [[nodiscard]] bool start(quint16 port);

    /// Runs one line of the console and prints its result.
    void runCommand(const QString &line);

Q_SIGNALS:
    void quitRequested();

private Q_SLOTS:
    void didHear(const QString &name);

private:
    /// @name Commands, in DaemonCommands.cpp
    void addJobCommands();
    void addMessageCommands();
    void addReportCommands();
    void addFaultCommands();
    void addOwnCommands();
    [[nodiscard]] CommandResult beginFromWords(const QStringList &words, BackupJob::Order order);
    [[nodiscard]] CommandResult setPreparation(const QStringList &words);
    [[nodiscard]] CommandResult retry(const QStringList &words);
    [[nodiscard]] CommandResult setPace(const QStringList &words);
    [[nodiscard]] CommandResult setReportForm(const QStringList &words);
    [[nodiscard]] CommandResult sendOlderReport(const QStringList &words);
    /// Changes what figures say, and reports them at once.
    [[nodiscard]] CommandResult changeFigures(const std::function<void(BackupJob &job)> &change);
    void sendBurst(int count);

    /// @name Commands of the activity logs, in DaemonLogCommands.cpp
    void addLogCommands();
    void addHistoryCommands();
    [[nodiscard]] CommandResult logOne(int optype, const QString &status, const QStringList &words);
    [[nodiscard]] CommandResult logText(const QString &path);
    [[nodiscard]] CommandResult logBig(const QStringList &words);
    [[nodiscard]] CommandResult setLogLanguage(const QStringList &words);
    [[nodiscard]] CommandResult deleteFromWeb(const QString &rest);

    /// @name The job
    [[nodiscard]] CommandResult beginJob(const BackupJob::Order &order);
    [[nodiscard]] QString reasonAgainst(const BackupJob::Order &order) const;
    [[nodiscard]] CommandResult setJobPaused(bool paused);
    [[nodiscard]] CommandResult endJob(const QString &result);
    void writeLog();
    void applyBandwidth(const QString &account);
    void tick();
    void report(ReportKind kind);
    void sendToolTip(const QString &message);
    void sendNextJobLine(const QString &account);

    /// @name Messages of the monitor
    void takeMessage(const QJsonObject &message);
    void takeCoreOperation(const QJsonObject &data);
    void joinRunningJob();
    void restoreRecord(const QJsonObject &ping);
    void answerDiskAccess(const QJsonObject &data);

    enum class ReportForm { Flat, Nested, None }; ///< nested: the keys inside a "data" object

    PathTable m_table;
    DaemonFiles m_files;
    DaemonServer m_server;
    CommandTable m_commands;
    QTimer m_pace;
    LogBook m_logs;
    std::optional<BackupJob> m_job;
    std::optional<LogBook::Entry> m_log;           ///< of m_job
    std::chrono::milliseconds m_preparation{2000}; ///< of each job: long enough to be seen
    std::chrono::milliseconds m_retryLeft{0};      ///< no work is done meanwhile
    ReportForm m_form = ReportForm::Flat;
};
