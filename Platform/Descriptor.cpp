#include "Platform/Descriptor.h"

#include <fcntl.h>

Descriptor openFolder(int at, const QByteArray &path)
{
    const auto openWith = [&](int access) {
        return uninterrupted([&] { return ::openat(at, path.constData(), access | O_DIRECTORY | O_CLOEXEC); });
    };
    Descriptor folder(openWith(O_RDONLY));
    if (!folder.isOpen() && errno == EACCES)
        return Descriptor(openWith(O_PATH)); // to be written to, not to be listed
    return folder;
}

int flushToDisk(int descriptor)
{
    if (uninterrupted([=] { return ::fsync(descriptor); }) == 0)
        return 0;
    const bool isNotMeantFor = errno == EINVAL || errno == ENOTSUP || errno == ENOSYS || errno == EBADF;
    return isNotMeantFor ? 0 : errno;
}
