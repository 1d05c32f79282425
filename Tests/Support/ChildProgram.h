#pragma once

#include <QByteArray>
#include <QStringList>

#include <sys/types.h>

/// A program that a test runs beside itself, with its standard input and output. It dies with the test. Unlike
/// QProcess it is not started by way of a fork, which a race detector takes for one of the test itself.
class ChildProgram
{
public:
    ChildProgram() = default;
    ~ChildProgram() { kill(); }
    ChildProgram(const ChildProgram &) = delete;
    ChildProgram &operator=(const ChildProgram &) = delete;

    /// False when the program cannot be started.
    [[nodiscard]] bool start(const QString &program, const QStringList &arguments);

    void write(const QByteArray &bytes) const;
    /// What has been printed since the last call; waits up to `milliseconds` for something.
    [[nodiscard]] QByteArray read(int milliseconds) const;

    void signal(int number) const;

    /// Ends its input and returns when the program has ended by itself.
    void finish();
    /// Ends it at once, and returns when it is gone.
    void kill();

private:
    void closeInput();
    void reap();

    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
};
