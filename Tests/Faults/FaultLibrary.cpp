#include "Tests/Faults/FaultLibrary.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// Below these there is only the kernel: any other call of the C library could come back here.

namespace
{
std::atomic<bool> isArmed = false;
std::atomic<int> counted = 0;
char folder[PATH_MAX];
int faultNumber = 0;
int faultError = 0;

bool isBelow(const char *path)
{
    const std::size_t length = std::strlen(folder);
    return std::strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

bool isOpenBelow(int descriptor)
{
    char link[64];
    char path[PATH_MAX] = {};
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    return syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1) > 0 && isBelow(path);
}

/// Whether this call is the one that fails; errno is set then.
bool isTheOne()
{
    if (++counted != faultNumber)
        return false;
    if (faultError == FaultEndsProcess)
        syscall(SYS_kill, syscall(SYS_getpid), SIGKILL);
    errno = faultError;
    return true;
}

bool failsAt(int at, const char *path)
{
    if (!isArmed)
        return false;
    return (path[0] == '/' || at == AT_FDCWD ? isBelow(path) : isOpenBelow(at)) && isTheOne();
}

bool failsOn(int descriptor)
{
    return isArmed && isOpenBelow(descriptor) && isTheOne();
}

int openAt(int at, const char *path, int flags, mode_t mode)
{
    return failsAt(at, path) ? -1 : int(syscall(SYS_openat, at, path, flags, mode));
}

int renameAt(int from, const char *old, int to, const char *path)
{
    return failsAt(to, path) ? -1 : int(syscall(SYS_renameat2, from, old, to, path, 0));
}

int unlinkAt(int at, const char *path, int flags)
{
    return failsAt(at, path) ? -1 : int(syscall(SYS_unlinkat, at, path, flags));
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}
} // namespace

void faultsArm(const char *below, int number, int error)
{
    std::snprintf(folder, sizeof folder, "%s", below);
    faultNumber = number;
    faultError = error;
    counted = 0;
    isArmed = true;
}

int faultsDisarm()
{
    isArmed = false;
    return counted;
}

// The names of the system, with the parameters that it gives them.
extern "C" {
int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(AT_FDCWD, path, flags, mode);
}

int openat(int at, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(at, path, flags, mode);
}

int open64(const char *path, int flags, ...) __attribute__((alias("open")));
int openat64(int at, const char *path, int flags, ...) __attribute__((alias("openat")));

// What a call without a mode becomes where the library checks its callers.
int __open_2(const char *path, int flags)
{
    return openAt(AT_FDCWD, path, flags, 0);
}

int __openat_2(int at, const char *path, int flags)
{
    return openAt(at, path, flags, 0);
}

int __open64_2(const char *path, int flags) __attribute__((alias("__open_2")));
int __openat64_2(int at, const char *path, int flags) __attribute__((alias("__openat_2")));

ssize_t write(int descriptor, const void *bytes, size_t count)
{
    return failsOn(descriptor) ? -1 : syscall(SYS_write, descriptor, bytes, count);
}

int fsync(int descriptor)
{
    return failsOn(descriptor) ? -1 : int(syscall(SYS_fsync, descriptor));
}

int fdatasync(int descriptor)
{
    return failsOn(descriptor) ? -1 : int(syscall(SYS_fdatasync, descriptor));
}

int ftruncate(int descriptor, off_t length) noexcept
{
    return failsOn(descriptor) ? -1 : int(syscall(SYS_ftruncate, descriptor, length));
}

int ftruncate64(int descriptor, off64_t length) noexcept __attribute__((alias("ftruncate")));

int truncate(const char *path, off_t length) noexcept
{
    return failsAt(AT_FDCWD, path) ? -1 : int(syscall(SYS_truncate, path, length));
}

int truncate64(const char *path, off64_t length) noexcept __attribute__((alias("truncate")));

int fchmod(int descriptor, mode_t mode) noexcept
{
    return failsOn(descriptor) ? -1 : int(syscall(SYS_fchmod, descriptor, mode));
}

int fchown(int descriptor, uid_t owner, gid_t group) noexcept
{
    return failsOn(descriptor) ? -1 : int(syscall(SYS_fchown, descriptor, owner, group));
}

int rename(const char *old, const char *path) noexcept
{
    return renameAt(AT_FDCWD, old, AT_FDCWD, path);
}

int renameat(int from, const char *old, int to, const char *path) noexcept
{
    return renameAt(from, old, to, path);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return failsAt(AT_FDCWD, path) ? -1 : int(syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

int unlink(const char *path) noexcept
{
    return unlinkAt(AT_FDCWD, path, 0);
}

int unlinkat(int at, const char *path, int flags) noexcept
{
    return unlinkAt(at, path, flags);
}
}
