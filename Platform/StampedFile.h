#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// What the file system tells of a file without opening it. Two different contents can share a stamp only while
/// the stamp is young: the clock of the file system moves in ticks.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    std::chrono::nanoseconds modified{}; ///< since 1970
    std::chrono::nanoseconds
        changed{}; ///< since 1970; rename and permissions count too, and no program can set it

    /// The stamp of a regular file; none where there is no such file.
    [[nodiscard]] static std::optional<FileStamp> of(const QString &path);
    /// Whether a write at or after `now` would show in another stamp.
    [[nodiscard]] bool isSettled(std::chrono::nanoseconds now) const;

    friend bool operator==(const FileStamp &a, const FileStamp &b) = default;
};

/// The wall clock as file stamps count it.
[[nodiscard]] std::chrono::nanoseconds fileClockNow();

/// The decoded content of a file, decoded again only when the file may have changed, or gave nothing usable
/// some seconds ago. A change is always seen by the next read(). Not for use by two threads at once.
template<class T>
class FileMemo
{
public:
    using Decode = std::function<std::shared_ptr<const T>(const QString &path)>; ///< null: nothing usable there
    using Now = std::function<std::chrono::nanoseconds()>;

    explicit FileMemo(Decode decode, Now now = fileClockNow)
        : m_decode(std::move(decode)), m_now(std::move(now))
    {
    }

    /// The content of the file at `path`; null when there is no such file or nothing usable in it.
    [[nodiscard]] std::shared_ptr<const T> read(const QString &path)
    {
        // The clock is read before the stamp: a write that falls between the two makes the stamp younger, not
        // older.
        const auto now = m_now();
        const auto stamp = FileStamp::of(path);
        if (stamp && m_stamp == stamp && m_path == path && isBelieved(now))
            return m_content;
        m_stamp.reset();
        m_content = stamp ? m_decode(path) : nullptr;
        m_decoded = now;
        if (stamp && stamp->isSettled(now) && FileStamp::of(path) == stamp) {
            m_path = path;
            m_stamp = stamp;
        }
        return m_content;
    }

private:
    /// It may have been the reading that failed.
    static constexpr std::chrono::seconds NothingUsableLasts{5};

    [[nodiscard]] bool isBelieved(std::chrono::nanoseconds now) const
    {
        return m_content || (now >= m_decoded && now - m_decoded < NothingUsableLasts);
    }

    Decode m_decode;
    Now m_now;
    std::chrono::nanoseconds m_decoded{}; ///< when the content was
    QString m_path;
    std::optional<FileStamp> m_stamp; ///< empty while the content must not be used again
    std::shared_ptr<const T> m_content;
};
