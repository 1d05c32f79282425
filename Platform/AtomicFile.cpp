#include "Platform/AtomicFile.h"

#include "Platform/Descriptor.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

// The library's own class for this keeps 16 KiB back and does not see that their flush failed, so that a full
// disk left empty files. Nothing is kept back here, and each step is looked at.

namespace
{
constexpr int MostLinks = 40;
constexpr int MostWriters = 16; ///< of one file at the same time
constexpr mode_t FolderMode = 0700;
constexpr mode_t PermissionBits = 0777;
const QByteArray TemporarySuffix = QByteArrayLiteral(".corvane-new-");

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArrayLiteral("/") : path.left(slash);
}

/// Where the bytes go: a link is followed, also to where nothing stands yet. An error number where that fails.
int followLinks(QByteArray &path)
{
    for (int links = 0; links < MostLinks; ++links) {
        std::array<char, PATH_MAX> buffer{};
        const ssize_t length = ::readlink(path.constData(), buffer.data(), buffer.size());
        if (length < 0)
            return errno == EINVAL || errno == ENOENT ? 0 : errno; // no link, or nothing there
        if (length == ssize_t(buffer.size()))
            return ENAMETOOLONG;
        const QByteArray target(buffer.data(), length);
        path = target.startsWith('/') ? target : folderOf(path) + '/' + target;
    }
    return ELOOP;
}

int makeFoldersAt(const QByteArray &path)
{
    struct stat facts {
    };
    if (::stat(path.constData(), &facts) == 0)
        return S_ISDIR(facts.st_mode) ? 0 : ENOTDIR;
    if (errno != ENOENT)
        return errno;
    const QByteArray parent = folderOf(path);
    if (parent == path)
        return ENOENT;
    if (const int error = makeFoldersAt(parent))
        return error;
    if (::mkdir(path.constData(), FolderMode) != 0 && errno != EEXIST)
        return errno;
    const Descriptor above = openFolder(AT_FDCWD, parent);
    return above.isOpen() ? flushToDisk(above) : errno;
}

/// One write on its way: the temporary file beside its target, gone with this object unless it took the
/// target's place.
class Replacement
{
public:
    Replacement(const Descriptor &folder, QByteArray name) : m_folder(folder), m_name(std::move(name)) {}
    ~Replacement()
    {
        // Where even this fails the next write of the file removes it.
        if (m_file.isOpen())
            ::unlinkat(m_folder, m_temporary.constData(), 0);
    }
    Replacement(const Replacement &) = delete;

    /// Each step answers 0 or an error number.
    int examineTarget();
    int makeTemporary();
    int fill(const QByteArray &bytes, mode_t newFileMode);
    int takePlace();
    /// Removes what other writers of the file have left behind, which were killed together.
    void removeOtherLeftovers();

private:
    enum class Claim { Mine, Taken, Unlockable };

    [[nodiscard]] QByteArray temporaryName(int writer) const;
    [[nodiscard]] Claim claim(int descriptor) const;
    [[nodiscard]] bool removeLeftover() const;
    [[nodiscard]] static bool isOld(int descriptor);
    [[nodiscard]] int keepOwnerAndMode() const;

    const Descriptor &m_folder;
    QByteArray m_name;
    QByteArray m_temporary;
    int m_writer = 0; ///< the number of the temporary file
    Descriptor m_file;
    std::optional<struct stat> m_old;
};

int Replacement::examineTarget()
{
    struct stat facts {
    };
    if (m_name.isEmpty())
        return EISDIR;
    if (::fstatat(m_folder, m_name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? 0 : errno;
    if (!S_ISREG(facts.st_mode))
        return S_ISDIR(facts.st_mode) ? EISDIR : EINVAL;
    // A file that nobody may write is not replaced by way of its folder.
    if (::faccessat(m_folder, m_name.constData(), W_OK, 0) != 0)
        return errno;
    m_old = facts;
    return 0;
}

/// A writer holds a lock on its temporary file, which goes with its process: a file without one is a leftover.
Replacement::Claim Replacement::claim(int descriptor) const
{
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? Claim::Taken : Claim::Unlockable;
    struct stat here {
    };
    struct stat held {
    };
    const bool isHere = ::fstatat(m_folder, m_temporary.constData(), &here, AT_SYMLINK_NOFOLLOW) == 0 &&
                        ::fstat(descriptor, &held) == 0 && here.st_dev == held.st_dev &&
                        here.st_ino == held.st_ino;
    return isHere ? Claim::Mine : Claim::Taken;
}

bool Replacement::removeLeftover() const
{
    constexpr int Flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const Descriptor file(::openat(m_folder, m_temporary.constData(), Flags));
    if (!file.isOpen())
        return false;
    const Claim claimed = claim(file);
    const bool isLeft = claimed == Claim::Mine || (claimed == Claim::Unlockable && isOld(file));
    return isLeft && ::unlinkat(m_folder, m_temporary.constData(), 0) == 0;
}

/// Where the file system knows no locks only its age tells a leftover: no write takes a minute.
bool Replacement::isOld(int descriptor)
{
    constexpr time_t LongestWrite = 60;
    struct stat facts {
    };
    return ::fstat(descriptor, &facts) == 0 && facts.st_mtime < ::time(nullptr) - LongestWrite;
}

QByteArray Replacement::temporaryName(int writer) const
{
    constexpr qsizetype LongestNumber = 2;
    return '.' + m_name.left(NAME_MAX - 1 - TemporarySuffix.size() - LongestNumber) + TemporarySuffix +
           QByteArray::number(writer);
}

void Replacement::removeOtherLeftovers()
{
    bool next = true;
    for (int writer = m_writer + 1; next && writer < MostWriters; ++writer) {
        m_temporary = temporaryName(writer);
        next = removeLeftover();
    }
}

int Replacement::makeTemporary()
{
    constexpr int Flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    for (int writer = 0; writer < MostWriters; ++writer) {
        m_temporary = temporaryName(writer);
        const auto openNew = [this] {
            return Descriptor(
                uninterrupted([this] { return ::openat(m_folder, m_temporary.constData(), Flags, 0600); }));
        };
        Descriptor made = openNew();
        if (!made.isOpen() && errno == EEXIST) {
            if (!removeLeftover())
                continue;
            made = openNew();
        }
        if (!made.isOpen() && errno != EEXIST)
            return errno;
        // Another that took it for a leftover has removed it by now.
        if (!made.isOpen() || claim(made) == Claim::Taken)
            continue;
        m_file = std::move(made);
        m_writer = writer;
        return 0;
    }
    return EBUSY;
}

int Replacement::keepOwnerAndMode() const
{
    struct stat made {
    };
    if (::fstat(m_file, &made) != 0)
        return errno;
    // Only root can give a file away; a group that is not ours can't be kept either. The write goes on.
    const bool ownerDiffers = made.st_uid != m_old->st_uid || made.st_gid != m_old->st_gid;
    if (ownerDiffers && ::fchown(m_file, m_old->st_uid, m_old->st_gid) != 0 &&
        ::fchown(m_file, uid_t(-1), m_old->st_gid) != 0 && errno == EIO)
        return errno;
    const mode_t mode = m_old->st_mode & PermissionBits;
    const bool isKept = ::fchmod(m_file, mode) == 0 || (made.st_mode & PermissionBits) == mode;
    return isKept ? 0 : errno;
}

int Replacement::fill(const QByteArray &bytes, mode_t newFileMode)
{
    if (const int error = AtomicFile::writeAll(m_file, bytes))
        return error;
    if (m_old) {
        if (const int error = keepOwnerAndMode())
            return error;
    } else if (newFileMode != 0600 && ::fchmod(m_file, newFileMode) != 0) {
        return errno;
    }
    return flushToDisk(m_file);
}

int Replacement::takePlace()
{
    if (::renameat(m_folder, m_temporary.constData(), m_folder, m_name.constData()) != 0)
        return errno;
    m_file = Descriptor();
    removeOtherLeftovers();
    return flushToDisk(m_folder);
}

int replaceFile(QByteArray path, const QByteArray &bytes, const AtomicFile::Options &options)
{
    if (const int error = followLinks(path))
        return error;
    const QByteArray folderPath = folderOf(path);
    Descriptor folder = openFolder(AT_FDCWD, folderPath);
    if (!folder.isOpen() && errno == ENOENT) {
        if (const int error = makeFoldersAt(folderPath))
            return error;
        folder = openFolder(AT_FDCWD, folderPath);
    }
    if (!folder.isOpen())
        return errno;
    Replacement replacement(folder, path.mid(path.lastIndexOf('/') + 1));
    int error = replacement.examineTarget();
    if (error == 0)
        error = replacement.makeTemporary();
    if (error == 0)
        error = replacement.fill(bytes, options.newFileMode);
    if (error == 0 && options.mayReplace && !options.mayReplace())
        error = ESTALE;
    return error == 0 ? replacement.takePlace() : error;
}

FileResult resultOf(int error)
{
    return error == 0 ? FileResult() : FileResult::failed(error);
}

/// All that is left in a file, which may grow meanwhile; none when that is more than `limit`.
std::optional<QByteArray> readAll(int descriptor, qint64 expected, qint64 limit)
{
    constexpr qsizetype EndProbe = 1; // so that the end is met without another allocation
    QByteArray bytes(expected + EndProbe, Qt::Uninitialized);
    qsizetype done = 0;
    for (;;) {
        if (done == bytes.size())
            bytes.resize(2 * bytes.size());
        const ssize_t count = uninterrupted(
            [&] { return ::read(descriptor, bytes.data() + done, std::size_t(bytes.size() - done)); });
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        done += count;
        if (done > limit)
            return std::nullopt;
    }
    bytes.truncate(done);
    return bytes;
}

/// A relative path would mean another place in each folder that the program is started in, and the system reads
/// a name up to its first zero.
bool namesOnePlace(const QString &path)
{
    return path.startsWith(u'/') && !path.contains(QChar(u'\0'));
}
} // namespace

int AtomicFile::writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written = uninterrupted(
            [&] { return ::write(descriptor, bytes.constData() + done, std::size_t(bytes.size() - done)); });
        if (written <= 0)
            return written < 0 ? errno : EIO;
        done += written;
    }
    return 0;
}

FileResult AtomicFile::write(const QString &path, const QByteArray &bytes, const Options &options)
{
    if (!namesOnePlace(path))
        return FileResult::failed(EINVAL);
    return resultOf(replaceFile(QFile::encodeName(path), bytes, options));
}

FileResult AtomicFile::remove(const QString &path)
{
    if (!namesOnePlace(path))
        return FileResult::failed(EINVAL);
    return resultOf(::unlink(QFile::encodeName(path).constData()) == 0 ? 0 : errno);
}

FileResult AtomicFile::makeFolders(const QString &path)
{
    if (!namesOnePlace(path))
        return FileResult::failed(EINVAL);
    return resultOf(makeFoldersAt(QFile::encodeName(QDir::cleanPath(path))));
}

std::optional<QByteArray> AtomicFile::read(const QString &path, qint64 limit)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat facts = {};
    const auto isTaken = [&] { return S_ISREG(facts.st_mode) && facts.st_size <= limit; };
    // To open a device may already do something. What takes the file's place after the look must not block
    // either.
    if (name.contains('\0') || ::stat(name.constData(), &facts) != 0 || !isTaken())
        return std::nullopt;
    constexpr int Flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor file(uninterrupted([&] { return ::open(name.constData(), Flags); }));
    if (!file.isOpen() || ::fstat(file, &facts) != 0 || !isTaken())
        return std::nullopt;
    return readAll(file, facts.st_size, limit);
}

FileResult AtomicFile::writeText(const QString &path, const QString &text)
{
    return write(path, text.toUtf8());
}

std::optional<QString> AtomicFile::readText(const QString &path, qint64 limit)
{
    const auto bytes = read(path, limit);
    if (!bytes)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(*bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}
