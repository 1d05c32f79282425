#include "Tests/Support/ChildProgram.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

bool ChildProgram::start(const QString &program, const QStringList &arguments)
{
    std::array<int, 2> input{}, output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0)
        return false;
    // By way of a tool that has the system end the program with this one, also where this one is killed.
    QByteArrayList words{"setpriv", "--pdeathsig", "KILL", program.toLocal8Bit()};
    for (const QString &argument : arguments)
        words.append(argument.toLocal8Bit());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    const bool started = posix_spawnp(&m_pid, "setpriv", &actions, nullptr, argv.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    m_input = input[1];
    m_output = output[0];
    if (!started)
        m_pid = -1;
    return started;
}

void ChildProgram::write(const QByteArray &bytes) const
{
    EXPECT_EQ(::write(m_input, bytes.constData(), static_cast<size_t>(bytes.size())), bytes.size());
}

QByteArray ChildProgram::read(int milliseconds) const
{
    pollfd ready{m_output, POLLIN, 0};
    if (::poll(&ready, 1, milliseconds) <= 0)
        return {};
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(m_output, buffer.data(), buffer.size());
    return count > 0 ? QByteArray(buffer.data(), count) : QByteArray();
}

void ChildProgram::finish()
{
    closeInput();
    reap();
}

void ChildProgram::kill()
{
    if (m_pid > 0)
        ::kill(m_pid, SIGKILL);
    closeInput();
    reap();
}

void ChildProgram::signal(int number) const
{
    if (m_pid > 0)
        ::kill(m_pid, number);
}

void ChildProgram::closeInput()
{
    if (const int input = std::exchange(m_input, -1); input >= 0)
        ::close(input);
}

void ChildProgram::reap()
{
    if (const pid_t pid = std::exchange(m_pid, -1); pid > 0)
        ::waitpid(pid, nullptr, 0);
    if (const int output = std::exchange(m_output, -1); output >= 0)
        ::close(output);
}
