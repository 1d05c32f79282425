#include "Platform/Relaunch.h"

#include "Platform/ShellWords.h"

#include <QFile>

#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace
{
/// What posix_spawn is told of the new process. Each step is skipped once one has failed.
class SpawnPlan
{
public:
    SpawnPlan()
    {
        posix_spawn_file_actions_init(&m_files);
        posix_spawnattr_init(&m_attributes);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            if (m_error == 0)
                m_error = posix_spawn_file_actions_addopen(&m_files, stream, "/dev/null", O_RDWR, 0);
        }
        // What this process ignores or blocks would otherwise stay so in all that comes after it.
        sigset_t signalSet;
        sigemptyset(&signalSet);
        posix_spawnattr_setsigmask(&m_attributes, &signalSet);
        sigaddset(&signalSet, SIGPIPE);
        posix_spawnattr_setsigdefault(&m_attributes, &signalSet);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&m_files);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;

    /// 0, else an error number.
    int spawn(const char *path, char *const arguments[])
    {
        pid_t child = 0;
        return m_error != 0 ? m_error : posix_spawn(&child, path, &m_files, &m_attributes, arguments, environ);
    }

private:
    posix_spawn_file_actions_t m_files{};
    posix_spawnattr_t m_attributes{};
    int m_error = 0;
};
} // namespace

QString Relaunch::command(const QString &executable)
{
    // exec: the shell becomes the program, so that nobody stands between it and what reaps it.
    return QStringLiteral("sleep 1; exec %1").arg(shellWord(executable));
}

std::optional<QString> Relaunch::spawnShell(const QString &text)
{
    QByteArray shell = QByteArrayLiteral("sh");
    QByteArray option = QByteArrayLiteral("-c");
    QByteArray script = QFile::encodeName(text);
    char *const arguments[] = {shell.data(), option.data(), script.data(), nullptr};
    const int error = SpawnPlan().spawn("/bin/sh", arguments);
    if (error == 0)
        return std::nullopt;
    return QString::fromLocal8Bit(std::strerror(error));
}
