#include "Platform/NewFile.h"

#include "Platform/AtomicFile.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>

namespace
{
constexpr int MostNames = 10'000; ///< that are tried for one file

bool isUnknownToFileSystem(int error)
{
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == ENOTTY;
}
} // namespace

NewFile::NewFile(int folder) : m_folder(folder)
{
    m_file =
        Descriptor(uninterrupted([&] { return ::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600); }));
    // Kernels that don't know such files take the flag for an attempt to write to the folder.
    const bool hasNone =
        !m_file.isOpen() && (isUnknownToFileSystem(errno) || errno == EISDIR || errno == ENOENT);
    if (hasNone)
        openNamed();
    else if (!m_file.isOpen())
        m_error = errno;
}

NewFile::~NewFile()
{
    if (!m_temporary.isEmpty())
        ::unlinkat(m_folder, m_temporary.constData(), 0);
}

void NewFile::openNamed()
{
    for (int number = 0; number < MostNames; ++number) {
        const QByteArray name = ".corvane-new-" + QByteArray::number(number);
        m_file = Descriptor(uninterrupted([&] {
            return ::openat(m_folder, name.constData(), O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_CLOEXEC,
                            0600);
        }));
        if (m_file.isOpen())
            m_temporary = name;
        if (m_file.isOpen() || errno != EEXIST)
            break;
    }
    m_error = m_file.isOpen() ? 0 : errno;
}

FileResult NewFile::fill(const RegularFile &source, const std::atomic<bool> &stop)
{
    constexpr qint64 Step = 256 * 1024;
    QByteArray buffer(Step, Qt::Uninitialized);
    // A log that is written to meanwhile would otherwise never end.
    for (qint64 left = source.size(); left > 0;) {
        if (stop)
            return FileResult::failed(ECANCELED);
        const ssize_t got = uninterrupted([&] {
            return ::pread(source.descriptor(), buffer.data(), std::size_t(std::min(left, Step)),
                           source.size() - left);
        });
        if (got <= 0)
            return FileResult::failed(got < 0 ? errno : ESTALE);
        if (const int error = AtomicFile::writeAll(m_file, QByteArray::fromRawData(buffer.constData(), got)))
            return FileResult::failed(error);
        left -= got;
    }
    const std::array<timespec, 2> times = {source.facts().st_atim, source.facts().st_mtim};
    // A file system without modes or times still has the bytes.
    constexpr mode_t Permissions = 0777;
    const bool kept =
        ::fchmod(m_file, source.facts().st_mode & Permissions) == 0 && ::futimens(m_file, times.data()) == 0;
    return kept || errno == EPERM || isUnknownToFileSystem(errno) ? FileResult() : FileResult::failed(errno);
}

int NewFile::renameTo(const QByteArray &name)
{
    const char *to = name.constData();
    if (::renameat2(m_folder, m_temporary.constData(), m_folder, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (!isUnknownToFileSystem(errno))
        return errno;
    // An empty file that is made only where there is none holds the place.
    const Descriptor place(
        uninterrupted([&] { return ::openat(m_folder, to, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600); }));
    if (!place.isOpen())
        return errno;
    if (::renameat(m_folder, m_temporary.constData(), m_folder, to) == 0)
        return 0;
    const int error = errno;
    // Unless somebody has put a file of theirs there meanwhile.
    struct stat held = {};
    struct stat here = {};
    const bool isOurs = ::fstat(place, &held) == 0 &&
                        ::fstatat(m_folder, to, &here, AT_SYMLINK_NOFOLLOW) == 0 &&
                        held.st_dev == here.st_dev && held.st_ino == here.st_ino && here.st_size == 0;
    if (isOurs)
        ::unlinkat(m_folder, to, 0);
    return error;
}

int NewFile::takeName(const QByteArray &name)
{
    if (m_temporary.isEmpty()) {
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(int(m_file));
        return ::linkat(AT_FDCWD, self.constData(), m_folder, name.constData(), AT_SYMLINK_FOLLOW) == 0 ? 0
                                                                                                        : errno;
    }
    const int error = renameTo(name);
    if (error == 0)
        m_temporary.clear();
    return error;
}

FileResult NewFile::publish(const QByteArray &name)
{
    const bool isName = !name.isEmpty() && name != "." && name != ".." && !name.contains('/');
    if (m_error != 0 || !isName || name.contains('\0'))
        return FileResult::failed(m_error != 0 ? m_error : EINVAL);
    if (!m_isFlushed) {
        if (const int error = flushToDisk(m_file))
            return FileResult::failed(error);
        m_isFlushed = true;
    }
    const int error = takeName(name);
    return error == 0 ? FileResult() : FileResult::failed(error);
}

std::optional<QByteArray> NewFile::publishFree(const QByteArray &stem, const QByteArray &suffix,
                                               FileResult &result)
{
    for (int number = 1; number <= MostNames; ++number) {
        const QByteArray name =
            number == 1 ? stem + suffix : stem + " (" + QByteArray::number(number) + ')' + suffix;
        result = publish(name);
        if (result)
            return name;
        if (result.error() != EEXIST)
            break;
    }
    return std::nullopt;
}
