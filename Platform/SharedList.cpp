#include "Platform/SharedList.h"

#include "Platform/AtomicFile.h"
#include "Platform/StampedFile.h"

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
/// A file as it was read, to be known again.
class Seen
{
public:
    explicit Seen(const QString &path)
        : m_path(path), m_now(fileClockNow()), m_stamp(FileStamp::of(path)),
          m_bytes(AtomicFile::read(path, Limits::SharedListBytes))
    {
    }

    [[nodiscard]] const std::optional<QByteArray> &bytes() const { return m_bytes; }
    [[nodiscard]] bool isMissing() const
    {
        struct stat facts {
        };
        return !m_bytes && ::stat(QFile::encodeName(m_path).constData(), &facts) != 0 &&
               (errno == ENOENT || errno == ENOTDIR);
    }

    /// Whether the same still stands there. While a stamp is young two contents can share it.
    [[nodiscard]] bool stillStands() const
    {
        if (FileStamp::of(m_path) != m_stamp)
            return false;
        return !m_stamp || m_stamp->isSettled(m_now) ||
               AtomicFile::read(m_path, Limits::SharedListBytes) == m_bytes;
    }

private:
    QString m_path;
    std::chrono::nanoseconds m_now; // before the stamp, so that a write in between leaves it unsettled
    std::optional<FileStamp> m_stamp;
    std::optional<QByteArray> m_bytes;
};

std::optional<QVariantMap> dictionaryOf(const Seen &seen, SharedList::Missing missing, QString &reason)
{
    if (missing == SharedList::Missing::Begin && seen.isMissing())
        return QVariantMap();
    reason = u"cannot be read"_s;
    const auto list = seen.bytes() ? PropertyList::parse(*seen.bytes(), &reason) : std::nullopt;
    if (!list)
        return std::nullopt;
    if (list->typeId() == QMetaType::QVariantMap)
        return list->toMap();
    reason = u"no dictionary"_s;
    return std::nullopt;
}

FileResult updateOnce(const QString &path, SharedList::Missing missing, PropertyList::Format format,
                      const SharedList::Change &change)
{
    const Seen seen(path);
    QString reason;
    const auto before = dictionaryOf(seen, missing, reason);
    if (!before)
        return FileResult::refused(reason);
    QVariantMap after = *before;
    if (const auto refusal = change(after))
        return FileResult::refused(*refusal);
    const auto bytes = PropertyList::serialize(after, format, &reason);
    if (!bytes)
        return FileResult::refused(reason);
    if (bytes == PropertyList::serialize(*before, format))
        return {};
    return AtomicFile::write(path, *bytes, {.mayReplace = [&seen] { return seen.stillStands(); }});
}
} // namespace

FileResult SharedList::update(const QString &path, Missing missing, PropertyList::Format format,
                              const Change &change)
{
    for (int attempt = 0; attempt < MostAttempts; ++attempt) {
        auto result = updateOnce(path, missing, format, change);
        if (result.error() != ESTALE)
            return result;
    }
    return FileResult::refused(u"others go on changing it"_s);
}
