#pragma once

#include <QByteArray>

#include <cerrno>
#include <utility>

#include <unistd.h>

/// A call of the system, made again when a signal interrupted it.
template<class Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Owns a file descriptor, which is closed with it; errno stays as it is then.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        const int before = errno;
        if (m_number >= 0)
            ::close(m_number);
        errno = before;
    }
    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    operator int() const { return m_number; }

private:
    int m_number;
};

/// A folder, for calls that name what is in it; closed where it can't be opened, with the reason in errno.
[[nodiscard]] Descriptor openFolder(int at, const QByteArray &path);

/// Has what was written reach the disk: 0, or the error number. Some file systems have no such call for
/// folders, and a folder that may not be read can't be asked: neither is a failure of the write.
[[nodiscard]] int flushToDisk(int descriptor);
