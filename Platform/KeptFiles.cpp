#include "Platform/KeptFiles.h"

#include "Platform/AtomicFile.h"
#include "Platform/PropertyList.h"
#include "Platform/StampedFile.h"

#include <QHash>

#include <mutex>

namespace
{
/// More files than one account has; then all go, since who asks for so many asks for another account's.
constexpr qsizetype MostKept = 64;
/// Larger ones are rare, and would cost more memory than they save time.
constexpr qint64 LargestKept = 64LL * 1024;

template<class Content>
class Shelf
{
public:
    template<class Load>
    std::optional<Content> read(const QString &path, Load load)
    {
        // The clock is read before the stamp: a write that falls between the two makes the stamp younger.
        const auto now = fileClockNow();
        const auto stamp = FileStamp::of(path);
        if (!stamp)
            return std::nullopt;
        if (auto kept = find(path, *stamp))
            return kept;
        std::optional<Content> content = load(path);
        if (content && stamp->size <= LargestKept && stamp->isSettled(now) && FileStamp::of(path) == stamp)
            keep(path, *stamp, *content);
        return content;
    }

private:
    struct Kept {
        FileStamp stamp;
        Content content;
    };

    std::optional<Content> find(const QString &path, const FileStamp &stamp)
    {
        const std::lock_guard lock(m_lock);
        const auto kept = m_files.constFind(path);
        return kept != m_files.cend() && kept->stamp == stamp ? std::optional(kept->content) : std::nullopt;
    }

    void keep(const QString &path, const FileStamp &stamp, const Content &content)
    {
        const std::lock_guard lock(m_lock);
        if (m_files.size() >= MostKept)
            m_files.clear();
        m_files.insert(path, Kept{stamp, content});
    }

    std::mutex m_lock;
    QHash<QString, Kept> m_files;
};
} // namespace

std::optional<QVariantMap> KeptFiles::dictionary(const QString &path, qint64 limit)
{
    static Shelf<QVariantMap> shelf;
    return shelf.read(
        path, [limit](const QString &file) { return PropertyList::readDictionary(file, nullptr, limit); });
}

std::optional<QString> KeptFiles::text(const QString &path)
{
    static Shelf<QString> shelf;
    return shelf.read(path, [](const QString &file) { return AtomicFile::readText(file); });
}
