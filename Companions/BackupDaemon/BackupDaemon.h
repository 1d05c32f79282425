#pragma once

#include "Companions/BackupDaemon/BackupJob.h"
#include "Companions/BackupDaemon/DaemonFiles.h"
#include "Companions/BackupDaemon/DaemonServer.h"
#include "Companions/Common/Commands.h"

#include <QObject>
#include <QTimer>

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

private:
    /// @name Commands, in DaemonCommands.cpp
    void addJobCommands();
    void addMessageCommands();
    void addFaultCommands();
    void addOwnCommands();
    [[nodiscard]] CommandResult beginFromWords(const QStringList &words, BackupJob::Origin origin);
    void sendBurst(int count);

    /// @name The job
    [[nodiscard]] CommandResult beginJob(const QString &account, BackupJob::Origin origin,
                                         std::chrono::seconds length);
    [[nodiscard]] CommandResult setJobPaused(bool paused);
    [[nodiscard]] CommandResult endJob(JobStatus how);
    void tick();
    void report(ReportKind kind);
    void sendToolTip(const QString &message);
    void sendNextJobLine(const QString &account);

    /// @name Messages of the monitor
    void takeMessage(const QJsonObject &message);
    void takeCoreOperation(const QJsonObject &data);
    void joinRunningJob();
    void answerDiskAccess(const QJsonObject &data);

    DaemonFiles m_files;
    DaemonServer m_server;
    CommandTable m_commands;
    QTimer m_pace;
    std::optional<BackupJob> m_job;
    bool m_nestReports = false; ///< reports carry their keys inside a "data" object
};
