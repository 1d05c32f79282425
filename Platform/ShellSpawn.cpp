#include "Platform/ShellSpawn.h"

#include "Platform/BusAddress.h"
#include "Platform/Umask.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace
{
/// What posix_spawn is told of the new process. Each step is skipped once one has failed.
class SpawnPlan
{
public:
    explicit SpawnPlan(int third)
    {
        posix_spawn_file_actions_init(&m_files);
        posix_spawnattr_init(&m_attributes);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            if (m_error == 0)
                m_error = posix_spawn_file_actions_addopen(&m_files, stream, "/dev/null", O_RDWR, 0);
        }
        // Libraries open descriptors as well, and not all of them ask to have them closed.
        constexpr int Third = STDERR_FILENO + 1;
        if (m_error == 0 && third >= 0)
            m_error = posix_spawn_file_actions_adddup2(&m_files, third, Third);
        if (m_error == 0)
            m_error = posix_spawn_file_actions_addclosefrom_np(&m_files, third >= 0 ? Third + 1 : Third);
        // What this process ignores or blocks would otherwise stay so in all that comes after it.
        sigset_t signalSet;
        sigemptyset(&signalSet);
        posix_spawnattr_setsigmask(&m_attributes, &signalSet);
        // All of them: sigfillset() leaves out two of the library's own, and those it would have the child
        // ignore.
        std::memset(&signalSet, 0xFF, sizeof signalSet);
        posix_spawnattr_setsigdefault(&m_attributes, &signalSet);
        posix_spawnattr_setflags(&m_attributes,
                                 POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&m_files);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;

    ShellSpawn::Outcome spawn(const char *path, char *const arguments[])
    {
        QByteArrayList entries = BusAddress::childEnvironment();
        std::vector<char *> environment;
        for (QByteArray &entry : entries)
            environment.push_back(entry.data());
        environment.push_back(nullptr);
        pid_t child = 0;
        if (m_error == 0)
            m_error = posix_spawn(&child, path, &m_files, &m_attributes, arguments, environment.data());
        return {m_error == 0 ? child : 0, m_error};
    }

private:
    posix_spawn_file_actions_t m_files{};
    posix_spawnattr_t m_attributes{};
    int m_error = 0;
};
} // namespace

ShellSpawn::Outcome ShellSpawn::start(const QString &text, int third)
{
    QByteArray shell = QByteArrayLiteral("sh");
    QByteArray option = QByteArrayLiteral("-c");
    QByteArray script = QFile::encodeName(Umask::shellPrefix() + text);
    if (script.contains('\0'))
        return {.error = EINVAL};
    char *const arguments[] = {shell.data(), option.data(), script.data(), nullptr};
    return SpawnPlan(third).spawn("/bin/sh", arguments);
}
