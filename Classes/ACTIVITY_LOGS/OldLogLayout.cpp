#include "Classes/ACTIVITY_LOGS/OldLogLayout.h"

#include "Classes/ACTIVITY_LOGS/LogWork.h"
#include "Platform/Descriptor.h"
#include "Platform/FileMove.h"
#include "Platform/Limits.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Paths/PathTable.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::array Operations = {"Backup"_L1,         "Restore"_L1,         "Delete"_L1,
                                   "Automatic_Sync"_L1, "Rename"_L1,          "Schedule"_L1,
                                   "LOGXML"_L1,         "Archive Cleanup"_L1, "Sync"_L1};
constexpr char FinderFile[] = ".DS_Store"; // some desktops leave one in each folder that was looked into

/// A folder of the product by its key; none where the table has no such path.
std::optional<QString> folderOfKey(QLatin1StringView key)
{
    const QString path = pathValue(key, {});
    return path.startsWith(u'/') ? std::optional(path) : std::nullopt;
}

/// "Backup" begins with "Backup", and holds what has been moved already.
bool isFolderOfAnOperation(const QString &name)
{
    return std::any_of(Operations.begin(), Operations.end(), [&](QLatin1StringView operation) {
        return name == OldLogLayout::folderOfOperation(operation);
    });
}

enum class Kind { File, Folder, Other };

Kind kindOf(int folder, const QByteArray &name)
{
    struct stat facts = {};
    if (::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        return Kind::Other;
    return S_ISREG(facts.st_mode) ? Kind::File : S_ISDIR(facts.st_mode) ? Kind::Folder : Kind::Other;
}

/// The moves of one operation into its folder, which is made when the first entry goes there.
class Sweep
{
public:
    Sweep(const QString &folder, const QString &operation, const std::atomic<bool> &stop)
        : m_path(folder), m_destination(QFile::encodeName(OldLogLayout::folderOfOperation(operation))),
          m_folder(openFolder(AT_FDCWD, QFile::encodeName(folder))), m_stop(stop)
    {
    }

    void move(const QByteArray &name)
    {
        switch (kindOf(m_folder, name)) {
        case Kind::File:
            return moveInto(m_folder, name);
        case Kind::Folder:
            return moveEntriesOf(name);
        case Kind::Other:
            ++m_swept.left;
        }
    }
    [[nodiscard]] OldLogLayout::Swept swept() const { return m_swept; }

private:
    [[nodiscard]] bool haveDestination()
    {
        if (m_target.isOpen())
            return true;
        if (::mkdirat(m_folder, m_destination.constData(), 0700) != 0 && errno != EEXIST)
            return false;
        m_target = openFolder(m_folder, m_destination);
        return m_target.isOpen();
    }

    void moveInto(int from, const QByteArray &name)
    {
        FileResult result = FileResult::failed(ENOTDIR);
        if (haveDestination())
            result = moveEntry(from, name, m_target, name, m_stop);
        // A place that is taken is asked for again at each sweep, and no fault of the disk.
        if (result || result.error() == EEXIST || result.error() == ECANCELED)
            ++(result ? m_swept.moved : m_swept.left);
        else if (!traceFailure(m_path + u'/' + QFile::decodeName(name), result))
            ++m_swept.left;
    }

    void moveEntriesOf(const QByteArray &name)
    {
        const Descriptor old(uninterrupted([&] {
            return ::openat(m_folder, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        }));
        if (!old.isOpen()) {
            ++m_swept.left;
            return;
        }
        for (const QByteArray &entry : entriesOf(old, Limits::FolderEntries)) {
            if (m_stop)
                return;
            if (kindOf(old, entry) == Kind::Other)
                ++m_swept.left;
            else
                moveInto(old, entry);
        }
        // What could not go holds its folder.
        const bool isGone = ::unlinkat(m_folder, name.constData(), AT_REMOVEDIR) == 0;
        if (!isGone && errno != ENOTEMPTY && errno != EEXIST)
            traceFailure(m_path + u'/' + QFile::decodeName(name), FileResult::failed(errno));
    }

    const QString m_path;
    const QByteArray m_destination;
    const Descriptor m_folder;
    Descriptor m_target;
    const std::atomic<bool> &m_stop;
    OldLogLayout::Swept m_swept;
};

/// Removes a folder in which nothing is, or only what a file manager leaves.
void removeWhenEmpty(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const Descriptor folder = openFolder(AT_FDCWD, name);
    const QByteArrayList entries = entriesOf(folder, 2);
    const bool hasFinderFile =
        entries == QByteArrayList{FinderFile} && kindOf(folder, FinderFile) == Kind::File;
    if (!folder.isOpen() || (!entries.isEmpty() && !hasFinderFile))
        return;
    const bool isEmptied = !hasFinderFile || ::unlinkat(folder, FinderFile, 0) == 0;
    // Something may have come by now: such a folder stays.
    if ((!isEmptied || ::rmdir(name.constData()) != 0) && errno != ENOTEMPTY && errno != EEXIST)
        traceFailure(path, FileResult::failed(errno));
}

std::optional<QDateTime> startTime(const QString &word)
{
    static const QRegularExpression form(
        uR"(\A(\d{1,2})-(\d{1,2})-(\d{4})-(\d{1,2})-(\d{1,2})(?:-(\d{1,2}))?\z)"_s);
    const auto match = form.match(word);
    const auto number = [&](int group) { return match.captured(group).toInt(); };
    const QDateTime time(QDate(number(3), number(1), number(2)), QTime(number(4), number(5), number(6)));
    return match.hasMatch() && time.isValid() ? std::optional(time) : std::nullopt;
}
} // namespace

QString OldLogLayout::folderOfOperation(const QString &operation)
{
    if (operation == "Automatic_Sync"_L1)
        return u"Archive Cleanup"_s;
    return operation == "Schedule"_L1 ? u"Backup"_s : operation;
}

OldLogLayout::Swept OldLogLayout::moveLogFiles(const QStringList &names, const QString &operation,
                                               const QString &folder, const std::atomic<bool> &stop)
{
    std::optional<Sweep> sweep;
    for (const QString &name : names) {
        if (!name.startsWith(operation) || isFolderOfAnOperation(name))
            continue;
        if (stop)
            break;
        if (!sweep)
            sweep.emplace(folder, operation, stop);
        sweep->move(QFile::encodeName(name));
    }
    return sweep ? sweep->swept() : Swept();
}

OldLogLayout::Swept OldLogLayout::moveOldLogs(const QString &folder, const std::atomic<bool> &stop)
{
    if (!folder.startsWith(u'/'))
        return {};
    QStringList names;
    {
        const Descriptor listed = openFolder(AT_FDCWD, QFile::encodeName(folder));
        if (!listed.isOpen())
            return {};
        for (const QByteArray &name : entriesOf(listed, Limits::FolderEntries))
            names.append(QFile::decodeName(name));
    }
    Swept all;
    for (const QLatin1StringView operation : Operations) {
        const Swept swept = moveLogFiles(names, operation, folder, stop);
        all.moved += swept.moved;
        all.left += swept.left;
    }
    if (!stop)
        removeWhenEmpty(folder);
    return all;
}

bool OldLogLayout::isOldSessionLogsFolderExist()
{
    const auto folder = folderOfKey("SessionLogsFolderPath"_L1);
    const auto switches = folderOfKey("SessionsLogsPlistPath"_L1);
    if (!folder || !switches)
        return false;
    const Descriptor days = openFolder(AT_FDCWD, QFile::encodeName(*folder + "/LOGXML"_L1));
    if (!days.isOpen() || entriesOf(days, 1).isEmpty())
        return false;
    const auto list = PropertyList::readDictionary(*switches);
    return list && list->value(u"shouldShowOldLogs"_s).toString() == u'1';
}

std::optional<OldLogLayout::SessionLog> OldLogLayout::sessionLog(const QString &folder, const QString &name)
{
    if (name.startsWith(u'.'))
        return std::nullopt;
    const QStringList words = name.split(u' ', Qt::SkipEmptyParts);
    return SessionLog{.Filepath = folder + u'/' + name,
                      .Description = words.value(0),
                      .StartTime = startTime(words.value(1))};
}

std::vector<OldLogLayout::SessionLog> OldLogLayout::reloadSessionLogs()
{
    std::vector<SessionLog> logs;
    const auto folder = folderOfKey("SessionLogsNewFolderPath"_L1);
    if (!folder)
        return logs;
    const Descriptor listed = openFolder(AT_FDCWD, QFile::encodeName(*folder));
    QByteArrayList names = entriesOf(listed, Limits::FolderEntries);
    std::sort(names.begin(), names.end());
    for (const QByteArray &name : names) {
        if (auto log = sessionLog(*folder, QFile::decodeName(name)))
            logs.push_back(std::move(*log));
    }
    return logs;
}

struct OldLogSweep::State {
    const LogWorker worker{"corvane-sweep"};
    std::atomic<bool> stop = false;
    QHash<QString, std::vector<std::function<void(OldLogLayout::Swept)>>> waiting; // main thread only
};

OldLogSweep::OldLogSweep() : m_state(std::make_shared<State>())
{
}

OldLogSweep::~OldLogSweep()
{
    m_state->stop = true;
}

void OldLogSweep::start(const QString &folder, std::function<void(OldLogLayout::Swept)> done)
{
    const bool isUnderWay = m_state->waiting.contains(folder);
    auto &waiting = m_state->waiting[folder];
    if (done)
        waiting.push_back(std::move(done));
    if (isUnderWay)
        return;
    m_state->worker.async([state = m_state, folder] {
        const auto swept = OldLogLayout::moveOldLogs(folder, state->stop);
        onMainThread([state, folder, swept] {
            const auto told = state->waiting.take(folder);
            for (const auto &tell : told) {
                if (!state->stop)
                    tell(swept);
            }
        });
    });
}
