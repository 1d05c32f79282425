#pragma once

#include "Companions/Common/Commands.h"
#include "Companions/Console/Child.h"
#include "Companions/Console/StatusItemProbe.h"

#include <QDeadlineTimer>
#include <QQueue>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>

/// Where the console finds the programs it drives.
struct ConsoleSettings {
    QString companionsFolder; ///< the daemon and the main application
    QString monitor;          ///< executable of the monitor
    QString table;            ///< path table for the companions; empty for their own search
    QString screenshotTool;   ///< program that takes the picture file to write as its argument
    QString picturePrefix;    ///< goes before the name of each picture
    QString outFolder;        ///< where pictures go
};

/// Drives the demo world: owns its programs, and runs commands one after the other, each when the one before
/// has come to its end. The same language serves a person at the prompt and a script.
class Console : public QObject
{
    Q_OBJECT

public:
    enum class OnFailure { GoOn, Stop };

    Console(ConsoleSettings settings, OnFailure onFailure, QObject *parent = nullptr);
    ~Console() override;

    /// Queues one command line.
    void enqueue(const QString &line);

    /// The console ends when all that is queued has run.
    void endAfterQueue();

Q_SIGNALS:
    /// All programs may be ended; `status` is 0, or 1 after a command that failed under OnFailure::Stop.
    void finished(int status);

private:
    /// Runs a command. It ends, now or later, with one call of finish().
    using Action = std::function<void(const QStringList &words, const QString &rest)>;
    struct Command {
        QString usage;
        Action action;
    };

    void addProgramCommands();
    void addWatchCommands();
    void addCommand(const QString &name, const QString &usage, Action action);
    void runNext();
    void run(const QString &line);
    void finish(const CommandResult &result);
    void finishAfter(std::chrono::milliseconds limit, const QString &failure);

    void startChild(Child &child, bool answersStart);
    void stopChild(Child &child, const QString &command);
    void forward(Child &child, const QString &line);
    void stopMonitor();
    void expectToolTip(const QString &rest);
    void expectNewToolTip(const QStringList &words);
    void watchToolTip(std::chrono::seconds limit, std::function<bool(const QString &)> isMet);
    void takeScreenshot(const QString &name);
    void printHelp();
    void printHelpOf(QList<Child *> children);

    ConsoleSettings m_settings;
    OnFailure m_onFailure;
    StatusItemProbe m_probe;
    Child m_daemon;
    Child m_application;
    Child m_monitor;
    std::map<QString, Command> m_commands;
    QQueue<QString> m_queue;
    QTimer m_deadline;              ///< of the command that runs
    QTimer m_poll;                  ///< of a command that watches
    QMetaObject::Connection m_wait; ///< to the signal that ends the command
    QString m_lastToolTip;          ///< as the last watching command left it
    bool m_busy = false;
    bool m_endAfterQueue = false;
};
