#pragma once

#include <QObject>
#include <QProcess>

#include <chrono>

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

    /// Starts the program. False when it cannot be started.
    [[nodiscard]] bool start();
    void writeLine(const QString &line);

    /// Asks the program to end, and ends it when it has not within `patience`.
    void end(std::chrono::milliseconds patience);

Q_SIGNALS:
    void answered(bool done, const QString &text);
    void ended();

private:
    void readLines();

    QString m_name;
    QProcess m_process;
};

/// Makes this process the parent of all that its children leave behind, such as a program that has relaunched
/// itself, so that nothing outlives the console.
void adoptOrphans();

/// The running children of this process whose executable is `program`, started here or adopted.
[[nodiscard]] QList<qint64> childrenRunning(const QString &program);

/// Ends those children, and returns when they are gone or `patience` is over; what is left then is killed.
void endChildrenRunning(const QString &program, std::chrono::milliseconds patience);
