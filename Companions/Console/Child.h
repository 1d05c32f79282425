#pragma once

#include <QObject>
#include <QProcess>

#include <chrono>
#include <optional>

/// A program that the console has started: commands go to its standard input one a line, and every line it
/// prints is passed on with its name in front. A line that begins with "ok" or "error" answers a command.
class Child : public QObject
{
    Q_OBJECT

public:
    Child(QString name, QString program, QStringList arguments, QObject *parent = nullptr);
    ~Child() override;

    [[nodiscard]] const QString &name() const;
    [[nodiscard]] QString program() const;
    [[nodiscard]] bool isRunning() const;

    /// The exit status of the last run; empty when a signal ended it, or when it has not ended.
    [[nodiscard]] std::optional<int> exitCode() const;

    /// Starts the program. False when it cannot be started.
    [[nodiscard]] bool start();
    void writeLine(const QString &line);

    /// Asks the program to end, and ends it when it has not within `patience`.
    void end(std::chrono::milliseconds patience);

Q_SIGNALS:
    void answered(bool done, const QString &text);
    /// A line that is no answer.
    void printed(const QString &line);
    void ended();

private:
    void readLines();

    QString m_name;
    QProcess m_process;
    std::optional<int> m_exitCode;
};

/// Makes this process the parent of all that its children leave behind, such as a program that has relaunched
/// itself, so that nothing outlives the console.
void adoptOrphans();

/// The running children of this process whose executable is `program`, started here or adopted.
[[nodiscard]] QList<qint64> childrenRunning(const QString &program);

/// Ends those children, and returns when they are gone or `patience` is over; what is left then is killed.
void endChildrenRunning(const QString &program, std::chrono::milliseconds patience);

/// Takes the exit statuses of the children of that program that were adopted and have ended; one that a signal
/// ended has none. No Child of that program may be running: its end would be taken too.
[[nodiscard]] QList<std::optional<int>> reapEnded(const QString &program);
