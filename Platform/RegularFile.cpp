#include "Platform/RegularFile.h"

#include <QFile>

#include <fcntl.h>

RegularFile RegularFile::openAt(int folder, const QByteArray &path, int linkFlag)
{
    const auto failed = [](int error) {
        RegularFile none;
        none.m_error = error;
        return none;
    };
    struct stat before = {};
    if (::fstatat(folder, path.constData(), &before, linkFlag == O_NOFOLLOW ? AT_SYMLINK_NOFOLLOW : 0) != 0)
        return failed(errno);
    if (!S_ISREG(before.st_mode))
        return failed(EINVAL);
    RegularFile file;
    // Another thing may stand there by now: it is not waited for, and seen below.
    const int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | linkFlag;
    file.m_descriptor = Descriptor(uninterrupted([&] { return ::openat(folder, path.constData(), flags); }));
    if (!file.m_descriptor.isOpen() || ::fstat(file.m_descriptor, &file.m_facts) != 0)
        return failed(errno);
    return S_ISREG(file.m_facts.st_mode) ? std::move(file) : failed(EINVAL);
}

RegularFile RegularFile::open(const QString &path)
{
    // A relative path means another place in each folder, and the system reads a name up to its first zero.
    const bool namesOnePlace = path.startsWith(u'/') && !path.contains(QChar(u'\0'));
    return openAt(AT_FDCWD, namesOnePlace ? QFile::encodeName(path) : QByteArray(), 0);
}

RegularFile RegularFile::openEntry(int folder, const QByteArray &name)
{
    return openAt(folder, name, O_NOFOLLOW);
}

std::optional<QByteArray> RegularFile::beginning(qsizetype limit) const
{
    QByteArray bytes(limit, Qt::Uninitialized);
    qsizetype done = 0;
    while (done < limit) {
        const ssize_t got = uninterrupted(
            [&] { return ::pread(m_descriptor, bytes.data() + done, std::size_t(limit - done), done); });
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        done += got;
    }
    bytes.truncate(done);
    return bytes;
}
