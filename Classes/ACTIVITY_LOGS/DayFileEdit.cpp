#include "Classes/ACTIVITY_LOGS/DayFileEdit.h"

#include "Classes/ACTIVITY_LOGS/DayFileScan.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"
#include "Platform/StampedFile.h"
#include "Source/Logger/WriteTrace.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// More changes in a row than any daemon makes.
constexpr int MostAttempts = 5;

/// What a record shares with its doubles of the same user.
struct Identity {
    QString optype;
    QString datetime;
    QString uname;

    explicit Identity(const LogNode &node) : optype(node.optype), datetime(node.datetime), uname(node.uname) {}
    friend bool operator==(const Identity &a, const Identity &b) = default;
    friend std::size_t qHash(const Identity &one, std::size_t seed = 0)
    {
        return qHashMulti(seed, one.optype, one.datetime, one.uname);
    }
};

/// Which records of a file are meant.
class Selection
{
public:
    explicit Selection(const LogNodes &records)
    {
        m_named.reserve(qsizetype(records.size()));
        for (const LogNodePtr &record : records)
            m_named.insert({Identity(*record), record->logfile});
    }

    /// Those of one state of the file, in its order.
    [[nodiscard]] std::vector<DayFileScan::Record> of(std::vector<DayFileScan::Record> scanned) const
    {
        QSet<Identity> present;
        for (const auto &record : scanned) {
            if (Identity identity(*record.node); isNamed(identity, record.node->logfile))
                present.insert(std::move(identity));
        }
        std::erase_if(scanned, [&](const auto &record) { return !present.contains(Identity(*record.node)); });
        return scanned;
    }

private:
    /// The session log may be gone by now, so where its path leads can't be asked again.
    [[nodiscard]] bool isNamed(const Identity &identity, const QString &logfile) const
    {
        return m_named.contains({identity, logfile}) ||
               (!logfile.isEmpty() && m_named.contains({identity, LogFileNames::belowHome(logfile)}));
    }

    QSet<std::pair<Identity, QString>> m_named;
};

struct Edit {
    bool changes = false;
    QByteArray bytes;
    bool leavesNothing = false;
};

/// None, with the cause, for a file that isn't well-formed.
std::optional<Edit> edited(const QByteArray &bytes, const Selection &selection, QString *reason)
{
    DayFileScan::Outcome before = DayFileScan::run(bytes, {});
    *reason = before.reason;
    if (!before.isWhole)
        return std::nullopt;
    const std::vector<DayFileScan::Record> removed = selection.of(std::move(before.records));
    if (removed.empty())
        return Edit();
    Edit edit{.changes = true, .bytes = DayFileScan::without(removed, bytes)};
    const auto after = DayFileScan::run(edit.bytes, {});
    *reason = after.reason;
    if (!after.isWhole)
        return std::nullopt;
    edit.leavesNothing = !after.holdsAnything;
    return edit;
}

FileResult carryOut(const QString &path, const Edit &edit, const FileStamp &stamp)
{
    const auto isUnchanged = [&] { return FileStamp::of(path) == stamp; };
    if (!edit.leavesNothing)
        return AtomicFile::write(path, edit.bytes, {.mayReplace = isUnchanged});
    return isUnchanged() ? AtomicFile::remove(path) : FileResult::failed(ESTALE);
}

/// As AtomicFile will find it; a link's target is what it replaces.
FileResult writable(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    const QByteArray folder = QFile::encodeName(QFileInfo(target).path());
    const bool isWritable =
        ::faccessat(AT_FDCWD, QFile::encodeName(target).constData(), W_OK, AT_EACCESS) == 0 &&
        ::faccessat(AT_FDCWD, folder.constData(), W_OK | X_OK, AT_EACCESS) == 0;
    return isWritable ? FileResult() : FileResult::failed(errno);
}

DayFileEdit::Outcome failed(const QString &path, const FileResult &result)
{
    traceFailure(path, result);
    return DayFileEdit::Outcome::Failed;
}
} // namespace

DayFileEdit::Outcome DayFileEdit::removeRecords(const QString &path, const LogNodes &records, const Read &read)
{
    const Selection selection(records);
    FileResult result;
    for (int attempt = 0; attempt < MostAttempts; ++attempt) {
        const auto stamp = FileStamp::of(path);
        if (!stamp)
            return Outcome::Untouched;
        const auto bytes = read(path, Limits::DayFileBytes);
        if (!bytes)
            return failed(path, FileResult::refused(u"it can't be read"_s));
        QString reason;
        const auto edit = edited(*bytes, selection, &reason);
        if (!edit)
            return failed(path, FileResult::refused(reason));
        if (!edit->changes)
            return Outcome::Untouched;
        result = carryOut(path, *edit, *stamp);
        if (result && traceFailure(path, result)) // its next failure is news
            return edit->leavesNothing ? Outcome::Removed : Outcome::Rewritten;
        if (result.error() != ESTALE)
            break;
    }
    return failed(path, result);
}

bool DayFileEdit::canEdit(const QString &path)
{
    if (!FileStamp::of(path))
        return true;
    FileResult result = writable(path);
    const auto bytes = result ? AtomicFile::read(path, Limits::DayFileBytes) : std::nullopt;
    if (result && !bytes)
        result = FileResult::refused(u"it can't be read"_s);
    if (bytes) {
        const DayFileScan::Outcome scanned = DayFileScan::run(*bytes, {});
        if (!scanned.isWhole)
            result = FileResult::refused(scanned.reason);
    }
    if (!result)
        traceFailure(path, result); // that it could be written is told by the write
    return bool(result);
}
