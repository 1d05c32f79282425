#include "Source/Logger/TraceFile.h"

#include "Platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace
{
/// A new file is made by the same call: two writers that both find none must not replace each other's first
/// line.
int openForAppending(const QString &path)
{
    // Without O_NONBLOCK a pipe of that name would hold the caller until somebody reads it.
    constexpr int Flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    return ::open(QFile::encodeName(path).constData(), Flags, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
}

void writeWhole(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        done += written;
    }
}
} // namespace

bool TraceFile::write(const QString &path, const QString &text)
{
    if (path.isEmpty() || text.isEmpty())
        return false;
    const QByteArray bytes = text.toUtf8();
    int descriptor = openForAppending(path);
    if (descriptor < 0 && errno == ENOENT && QDir().mkpath(QFileInfo(path).path()))
        descriptor = openForAppending(path);
    if (descriptor < 0)
        return false;
    struct stat facts {
    };
    bool isFull = false;
    if (::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode)) {
        writeWhole(descriptor, bytes);
        isFull = facts.st_size + bytes.size() > LargestBytes;
    }
    ::close(descriptor);
    return isFull;
}

void TraceFile::clearLogs(const QString &path)
{
    struct stat facts {
    };
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &facts) != 0)
        return;
    if (S_ISREG(facts.st_mode) && facts.st_size > LargestBytes)
        std::ignore = AtomicFile::write(path, {});
}

void TraceFile::append(const QString &path, const QString &text)
{
    if (write(path, text))
        clearLogs(path);
}
