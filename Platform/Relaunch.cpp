#include "Platform/Relaunch.h"

#include "Platform/ShellSpawn.h"
#include "Platform/ShellWords.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// A pipe whose writing end nobody else has: left open, it is closed by the kernel with this process, however
/// that ends.
struct Lifeline {
    Lifeline() : error(pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno) {}
    ~Lifeline()
    {
        if (error == 0)
            close(ends[0]);
    }
    Lifeline(const Lifeline &) = delete;

    std::array<int, 2> ends{-1, -1};
    int error; ///< 0, else an error number
};
} // namespace

QString Relaunch::command(const QString &executable)
{
    // exec: the shell becomes the program, so that nobody stands between it and what reaps it.
    return u"sleep 1; read -r _ <&3; exec 3<&-; exec %1"_s.arg(shellWord(executable));
}

std::optional<QString> Relaunch::spawnShell(const QString &text)
{
    const Lifeline lifeline;
    const int error = lifeline.error != 0 ? lifeline.error : ShellSpawn::start(text, lifeline.ends[0]).error;
    if (error == 0)
        return std::nullopt;
    return QString::fromLocal8Bit(std::strerror(error));
}
