#include "Platform/FileMove.h"

#include "Platform/Limits.h"
#include "Platform/NewFile.h"

#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
constexpr int DeepestFolder = 32;

struct Move {
    int from;
    const QByteArray &name;
    int to;
    const QByteArray &newName;
    const std::atomic<bool> &stop;
};

FileResult byCopy(const Move &move)
{
    const RegularFile source = RegularFile::openEntry(move.from, move.name);
    if (!source)
        return FileResult::failed(source.error());
    NewFile copy(move.to);
    if (copy.error() != 0)
        return FileResult::failed(copy.error());
    if (FileResult filled = copy.fill(source, move.stop); !filled)
        return filled;
    struct stat now = {};
    const bool isTheSame = ::fstatat(move.from, move.name.constData(), &now, AT_SYMLINK_NOFOLLOW) == 0 &&
                           now.st_dev == source.facts().st_dev && now.st_ino == source.facts().st_ino &&
                           now.st_size == source.size() &&
                           now.st_mtim.tv_sec == source.facts().st_mtim.tv_sec &&
                           now.st_mtim.tv_nsec == source.facts().st_mtim.tv_nsec;
    if (!isTheSame)
        return FileResult::failed(ESTALE); // its writer has not done with it
    if (FileResult named = copy.publish(move.newName); !named)
        return named;
    if (const int error = flushToDisk(move.to))
        return FileResult::failed(error);
    return ::unlinkat(move.from, move.name.constData(), 0) == 0 ? FileResult() : FileResult::failed(errno);
}

FileResult moveOne(const Move &move, int depth);

FileResult folderByEntries(const Move &move, int depth)
{
    if (depth >= DeepestFolder)
        return FileResult::failed(ELOOP);
    const Descriptor source(uninterrupted([&] {
        return ::openat(move.from, move.name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }));
    if (!source.isOpen())
        return FileResult::failed(errno);
    // One that stands may be what an earlier move that was stopped had got to.
    if (::mkdirat(move.to, move.newName.constData(), 0700) != 0 && errno != EEXIST)
        return FileResult::failed(errno);
    const Descriptor target(uninterrupted([&] {
        return ::openat(move.to, move.newName.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }));
    if (!target.isOpen())
        return FileResult::failed(errno == ENOTDIR || errno == ELOOP ? EEXIST : errno);
    FileResult result;
    for (const QByteArray &entry : entriesOf(source, Limits::FolderEntries)) {
        if (FileResult moved = moveOne({source, entry, target, entry, move.stop}, depth + 1); !moved)
            result = moved;
        if (move.stop)
            break;
    }
    if (!result)
        return result;
    return ::unlinkat(move.from, move.name.constData(), AT_REMOVEDIR) == 0 ? FileResult()
                                                                           : FileResult::failed(errno);
}

/// For file systems that can't be told to replace nothing: a folder takes the place of an empty one alone.
int renameOntoNewFolder(const Move &move)
{
    if (::mkdirat(move.to, move.newName.constData(), 0700) != 0)
        return errno;
    if (::renameat(move.from, move.name.constData(), move.to, move.newName.constData()) == 0)
        return 0;
    const int error = errno;
    return ::unlinkat(move.to, move.newName.constData(), AT_REMOVEDIR) == 0 ? error : errno;
}

FileResult moveOne(const Move &move, int depth)
{
    if (move.stop)
        return FileResult::failed(ECANCELED);
    if (::renameat2(move.from, move.name.constData(), move.to, move.newName.constData(), RENAME_NOREPLACE) == 0)
        return {};
    int error = errno;
    const bool isUnknown = error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
    struct stat facts = {};
    if ((!isUnknown && error != EXDEV) ||
        ::fstatat(move.from, move.name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        return FileResult::failed(error);
    if (S_ISREG(facts.st_mode))
        return byCopy(move);
    if (S_ISDIR(facts.st_mode) && isUnknown)
        error = renameOntoNewFolder(move);
    if (S_ISDIR(facts.st_mode) && error == EXDEV)
        return folderByEntries(move, depth);
    return error == 0 ? FileResult() : FileResult::failed(error);
}
} // namespace

FileResult moveEntry(int fromFolder, const QByteArray &name, int toFolder, const QByteArray &newName,
                     const std::atomic<bool> &stop)
{
    return moveOne({fromFolder, name, toFolder, newName, stop}, 0);
}

QByteArrayList entriesOf(int folder, qsizetype limit)
{
    // A descriptor of its own: the listing moves its place, and closes it.
    const int own = uninterrupted([=] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    const std::unique_ptr<DIR, int (*)(DIR *)> listing(own < 0 ? nullptr : ::fdopendir(own), ::closedir);
    if (!listing) {
        const Descriptor closed(own);
        return {};
    }
    QByteArrayList names;
    while (const dirent *entry = names.size() < limit ? ::readdir(listing.get()) : nullptr) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.append(name);
    }
    return names;
}
