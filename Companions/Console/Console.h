#pragma once

#include "Companions/Common/Commands.h"
#include "Companions/Console/Child.h"
#include "Companions/Console/MenuProbe.h"
#include "Companions/Console/SeenLines.h"
#include "Companions/Console/StatusItemProbe.h"
#include "Companions/Console/WindowProbe.h"

#include <QQueue>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>

class LogTable;

/// Where the console finds the programs it drives.
struct ConsoleSettings {
    QString companionsFolder; ///< the daemons and the main application
    QString monitor;          ///< executable of the monitor
    QString table;            ///< path table for the companions; empty for their own search
    QString screenshotTool;   ///< program that is given the picture file to write, and tip, menu or window ID
    QString picturePrefix;    ///< goes before the name of each picture
    QString outFolder;        ///< where pictures go
};

/// What an expectation names, and how long it may take to come.
struct Wanted {
    static constexpr std::chrono::seconds DefaultLimit{10};

    QString text;
    std::chrono::seconds limit = DefaultLimit;
};

/// Reads "TEXT [SECONDS]"; quotation marks keep a number at the end of the text apart from the limit.
[[nodiscard]] Wanted wantedOf(const QString &words);

/// A row of the list of logs, or a number of rows, and what is expected there.
struct RowWanted {
    int number = 0;
    Wanted wanted;
};

/// Reads "NUMBER [TEXT] [SECONDS]"; none without a number.
[[nodiscard]] std::optional<RowWanted> rowWantedOf(const QString &words);

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
    void addCommand(const QString &name, const QString &usage, Action action);
    void runNext();
    void run(const QString &line);
    void finish(const CommandResult &result);
    void finishAfter(std::chrono::milliseconds limit, const QString &failure);

    void startChild(Child &child, bool answersStart);
    void stopChild(Child &child, const QString &command);
    void forward(Child &child, const QString &line);
    void runSyncCommand(const QStringList &words, const QString &rest);
    void printHelp();
    void printHelpOf(QList<Child *> children);

    /// @name What starts and ends, in ConsoleLife.cpp
    /// @{
    void addLifeCommands();
    void endAll();
    void runApplicationCommand(const QString &verb);
    void expectApplication(const QString &text);
    void stopMonitor();
    void signalMonitor(const QString &name);
    void fillDiskOfMonitor(const QString &word);
    void startSecondMonitor();
    void expectMonitorEnded(const QString &text);
    /// @}

    /// @name What is seen, in ConsoleWatch.cpp
    /// @{
    void addWatchCommands();
    void runExpect(const QStringList &words, const QString &rest);
    /// Looks again and again, until a look is good or the time is over; the last look is the answer.
    void watch(std::chrono::seconds limit, std::function<CommandResult()> look);
    void expectToolTip(const QString &text);
    void expectNewToolTip(const QString &text);
    void watchToolTip(std::chrono::seconds limit, std::function<bool(const QString &)> isMet);
    [[nodiscard]] std::optional<QList<MenuEntry>> openMenu() const;
    void expectMenu(const QString &text);
    void expectNoMenu(const QString &text);
    void expectFile(const QString &text);
    void show(const QString &what);
    void clickItem(const QString &title);
    void takePicture(const QStringList &what, const QString &name);
    /// @}

    /// @name Windows and the daemon's part, in ConsoleWindows.cpp
    /// @{
    void addWindowCommands();
    [[nodiscard]] QList<DesktopWindow> monitorWindows() const;
    void expectWindow(const QString &text);
    void expectNoWindow(const QString &text);
    void expectWindowText(const QString &text);
    void expectNoWindowText(const QString &text);
    [[nodiscard]] QStringList windowTexts() const;
    void typeKeys(const QStringList &keys);
    [[nodiscard]] CommandResult typed(const QStringList &keys) const;
    void pictureWindow(const QString &name);
    void expectDaemonLine(const QString &text);
    void expectNoDaemonLine(const QString &text);
    void expectJob(const QString &text);
    /// @}

    /// @name The list of activity logs, in ConsoleLogs.cpp
    /// @{
    void addLogCommands();
    void expectLogs(const QString &text);
    void expectLog(const QString &text);
    void expectNoLog(const QString &text);
    void selectLogs(const QStringList &words);
    void pressLogDelete(const QString &row);
    void chooseEntry(const QString &name);
    void watchTable(std::chrono::seconds limit, std::function<CommandResult(const LogTable &)> look);
    /// @}

    ConsoleSettings m_settings;
    OnFailure m_onFailure;
    StatusItemProbe m_probe;
    Child m_daemon;
    Child m_sync;
    Child m_application; ///< does what its user does, and is not seen to run
    Child m_front;       ///< under its own name, so that the monitor finds it running
    Child m_monitor;
    std::unique_ptr<Child> m_second; ///< a monitor started beside the first
    std::map<QString, Command> m_commands;
    QQueue<QString> m_queue;
    QTimer m_deadline;              ///< of the command that runs
    QTimer m_poll;                  ///< of a command that watches
    QMetaObject::Connection m_wait; ///< to the signal that ends the command
    QString m_lastToolTip;          ///< as the last watching command left it
    SeenLines m_daemonLines;
    bool m_busy = false;
    bool m_endAfterQueue = false;
};
