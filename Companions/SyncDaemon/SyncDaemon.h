#pragma once

#include "Companions/Common/Commands.h"
#include "Companions/SyncDaemon/SyncFiles.h"
#include "Companions/SyncDaemon/SyncPort.h"

#include <QTimer>

/// The stand-in for the daemon that keeps a folder in step with the account: it syncs nothing, but says so as
/// the real one does, answers the monitor's messages, and misbehaves on command.
class SyncDaemon : public QObject
{
    Q_OBJECT

public:
    explicit SyncDaemon(PathTable table, QObject *parent = nullptr);

    /// Takes the daemon's port, and prints how that went. False when it could not.
    [[nodiscard]] bool start();

    /// Runs one command line and prints its result.
    void runCommand(const QString &line);

Q_SIGNALS:
    void quitRequested();

private:
    void addSyncCommands();
    void addMessageCommands();
    void addFaultCommands();
    void addOwnCommands();

    void didReceive(const QVariantList &array);
    void beginWork(int files);
    void doNextFile();
    [[nodiscard]] CommandResult setEnabled(const QStringList &words, bool enabled);
    [[nodiscard]] CommandResult setPaused(bool paused);

    SyncFiles m_files;
    SyncPort m_port;
    CommandTable m_commands;
    QTimer m_work;       ///< one file at each turn
    int m_filesDone = 0; ///< of the present round
    int m_filesInAll = 0;
    bool m_isReinitializing = false; ///< the present round is one
};
