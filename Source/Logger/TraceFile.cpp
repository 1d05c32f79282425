#include "Source/Logger/TraceFile.h"

#include "Platform/AtomicFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// A new file is made by the same call: two writers that both find none must not replace each other's first
/// line.
int openForAppending(const QByteArray &name)
{
    // Without O_NONBLOCK a pipe of that name would hold the caller until somebody reads it.
    constexpr int Flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    return ::open(name.constData(), Flags, S_IRUSR | S_IWUSR);
}

/// The file of that name, or of that descriptor where the name is empty. Its times are not asked for: where
/// they are, the next write has to find a newer one, which takes as long as the write itself.
std::optional<struct statx> factsOf(int descriptor, const char *name)
{
    struct statx facts {
    };
    constexpr unsigned Wanted = STATX_TYPE | STATX_INO | STATX_SIZE;
    if (::statx(descriptor, name, AT_EMPTY_PATH, Wanted, &facts) != 0)
        return std::nullopt;
    return facts;
}

bool isSame(const struct statx &one, const struct statx &other)
{
    return one.stx_ino == other.stx_ino && one.stx_dev_major == other.stx_dev_major &&
           one.stx_dev_minor == other.stx_dev_minor;
}

bool isAbsolute(const QString &path)
{
    return path.startsWith(u'/');
}
} // namespace

void TraceFile::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

/// Has the regular file at `path` open, and answers how long it is; none when there is none to be had.
std::optional<qint64> TraceFile::openedSize(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    // As long as the old file is open its number is given to no other.
    if (m_descriptor >= 0) {
        const auto facts = factsOf(AT_FDCWD, name.constData());
        if (facts && isSame(*facts, m_opened))
            return qint64(facts->stx_size);
    }
    close();
    m_descriptor = openForAppending(name);
    if (m_descriptor < 0 && errno == ENOENT && AtomicFile::makeFolders(QFileInfo(path).path()))
        m_descriptor = openForAppending(name);
    if (m_descriptor < 0)
        return std::nullopt;
    const auto facts = factsOf(m_descriptor, "");
    if (!facts || !S_ISREG(facts->stx_mode)) {
        close();
        return std::nullopt;
    }
    m_opened = *facts;
    return qint64(facts->stx_size);
}

bool TraceFile::append(const QString &path, const QString &text)
{
    if (!isAbsolute(path) || text.isEmpty())
        return false;
    const QByteArray bytes = text.toUtf8();
    const std::lock_guard lock(m_lock);
    const auto size = openedSize(path);
    if (!size)
        return false;
    if (AtomicFile::writeAll(m_descriptor, bytes) != 0) {
        close(); // a server may have forgotten the file that it once gave out
        return false;
    }
    if (*size + bytes.size() > LargestBytes)
        clearLogs(path);
    return true;
}

void TraceFile::clearLogs(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat facts {
    };
    if (!isAbsolute(path) || ::stat(name.constData(), &facts) != 0)
        return;
    if (!S_ISREG(facts.st_mode) || facts.st_size <= LargestBytes)
        return;
    if (!AtomicFile::write(path, {}) && ::truncate(name.constData(), 0) != 0)
        return; // it may be read-only; the next line tries again
}
