// The order in which things reach the owner: a plan is made on the queue (what is there), comes home to be
// counted, and puts its files into the queue one by one; each comes home by itself. Whatever comes home looks
// first whether its read is still the one that counts, since the owner may have begun another, or be gone,
// after every call.

#include "Classes/ACTIVITY_LOGS/LogManager.h"

#include "Classes/ACTIVITY_LOGS/DayFileEdit.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"
#include "Classes/ACTIVITY_LOGS/LogFileRemoval.h"
#include "Classes/ACTIVITY_LOGS/LogParseOperation.h"
#include "Classes/ACTIVITY_LOGS/LogWork.h"
#include "Classes/ACTIVITY_LOGS/OldSessionLogs.h"
#include "Platform/FolderNames.h"
#include "Platform/Limits.h"
#include "Platform/MainThread.h"
#include "Platform/UserDefaults.h"
#include "Platform/WorkerThread.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Paths/PathTable.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <stop_token>
#include <system_error>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// A day's files in the order in which they are read.
constexpr QLatin1StringView DayFileEndings[] = {"_cdp"_L1, "_sync"_L1, ""_L1};

/// With ".xml" behind it, in any folder.
bool isFileName(const QString &key)
{
    return !key.isEmpty() && !key.contains(u'/') && !key.contains(QChar(u'\0'));
}

struct Listing {
    FileResult result;
    QStringList names; ///< sorted
};

/// The day files of a folder. One that the path table has no place for holds none.
Listing listDayFiles(const QString &folder)
{
    Listing listing;
    if (!folder.startsWith(u'/'))
        return listing;
    listing.result = forEachNameIn(folder, [&](const QByteArray &name) {
        if (name.endsWith(".xml"))
            listing.names.append(QFile::decodeName(name));
        return listing.names.size() < Limits::FolderEntries;
    });
    listing.names.sort();
    return listing;
}

/// For a read, whose failure is told.
Listing fetchDayFiles(const QString &folder)
{
    Listing listing = listDayFiles(folder);
    if (!listing.result) {
        std::printf("Error fetching XML files: %s\n", qUtf8Printable(listing.result.reason()));
        std::fflush(stdout);
    }
    return listing;
}

/// The keys of the days' files that are there.
QStringList keysPresent(const QString &folder, const QStringList &bases)
{
    QStringList keys;
    for (const QString &base : bases) {
        if (base.contains(u'/') || !folder.startsWith(u'/'))
            continue;
        for (const QLatin1StringView ending : DayFileEndings) {
            if (QFile::exists(folder + u'/' + base + ending + ".xml"_L1))
                keys.append(base + ending);
        }
    }
    return keys;
}

QStringList basesOf(const std::vector<UnparsedLog> &days, std::size_t count)
{
    QStringList bases;
    for (std::size_t i = 0; i < count; ++i)
        bases.append(days[i].name.chopped(qstrlen(".xml")));
    return bases;
}
} // namespace

/// What one fetch, with its further pages, has begun and not yet handed over.
struct LogManager::Read {
    std::stop_source stop;
    int steps = 0; ///< plans and files on their way
    bool isForWebOrder = false;
    int unread = 0; ///< files that gave no records, since the last end
    QString firstUnread;
};

/// What a read shall hand over.
struct LogManager::Plan {
    bool failed = false;
    bool isFetch = false; ///< which answers with an empty list where there is nothing else
    std::vector<UnparsedLog> unparsed;
    QStringList keys;
};

LogManager::LogManager(LogMaster &owner, const Clock &clock, Logs logs)
    : master(owner), m_clock(clock),
      mLogDumpPath(pathValue(logs == Logs::Current ? "LogsDumpPath"_L1 : "LogsDumpOldPath"_L1, {})),
      mQueue("ActivityLogs"), m_self(std::make_shared<LogManager *>(this))
{
}

LogManager::~LogManager()
{
    *m_self = nullptr;
    if (m_read)
        m_read->stop.request_stop();
}

// ---- Reading ------------------------------------------------------------------------------------------------

void LogManager::beginRead()
{
    if (m_read)
        m_read->stop.request_stop();
    m_read = std::make_shared<Read>();
    toalParseFileCount = 0;
    currentParseCount = 0;
    unparsedLogs.clear();
    // Letting go of years of records takes as long as a frame.
    mQueue.async([old = std::exchange(mLogData, {})] {});
}

void LogManager::fetchAllLogs()
{
    if (master.isDeleteFromWeb()) {
        fetchAndDeleteAllLogs();
        m_read->isForWebOrder = true;
        return;
    }
    beginRead();
    currentPage = 0;
    plan([folder = mLogDumpPath] {
        const Listing listing = fetchDayFiles(folder);
        Plan plan{.failed = !listing.result, .isFetch = true};
        plan.unparsed = LogListing::newestFirst(listing.names);
        const std::size_t first = std::min(plan.unparsed.size(), std::size_t(logsPerPage));
        plan.keys = keysPresent(folder, basesOf(plan.unparsed, first));
        plan.unparsed.erase(plan.unparsed.begin(), plan.unparsed.begin() + std::ptrdiff_t(first));
        return plan;
    });
}

void LogManager::fetchLogsForPage(int page)
{
    const std::size_t count = LogListing::pageLength(page, unparsedLogs.size(), logsPerPage);
    if (count == 0)
        return;
    plan([folder = mLogDumpPath, bases = basesOf(unparsedLogs, count)] {
        return Plan{.keys = keysPresent(folder, bases)};
    });
    unparsedLogs.erase(unparsedLogs.begin(), unparsedLogs.begin() + std::ptrdiff_t(count));
}

void LogManager::fetchLogs(QDate from, std::optional<QDate> to)
{
    beginRead();
    plan([folder = mLogDumpPath, from, to = to.value_or(QDate())] {
        return Plan{.isFetch = true, .keys = keysPresent(folder, LogListing::daysOf(from, to))};
    });
}

void LogManager::fetchAndDeleteAllLogs()
{
    beginRead();
    plan([folder = mLogDumpPath] {
        const Listing listing = fetchDayFiles(folder);
        return Plan{.failed = !listing.result,
                    .isFetch = true,
                    .keys = keysPresent(folder, LogListing::everyBase(listing.names))};
    });
}

void LogManager::parseXmlFile(const QString &name)
{
    if (!m_read)
        m_read = std::make_shared<Read>();
    plan([folder = mLogDumpPath, name] { return Plan{.keys = keysPresent(folder, {name})}; });
}

void LogManager::plan(std::function<Plan()> work)
{
    ++m_read->steps;
    mQueue.async([work = std::move(work), self = m_self, read = m_read] {
        if (read->stop.stop_requested())
            return;
        const auto made = std::make_shared<Plan>(work());
        onMainThread([self, read, made] {
            if (*self && (*self)->m_read == read)
                (*self)->schedule(*made);
        });
    });
}

void LogManager::schedule(Plan &plan)
{
    if (plan.failed) {
        stepDone(LogReadEnd::Failed);
        return;
    }
    if (!plan.unparsed.empty())
        unparsedLogs = std::move(plan.unparsed);
    toalParseFileCount += int(plan.keys.size());
    const QString today = LogFileNames::dayName(m_clock.now().date());
    for (const QString &key : plan.keys)
        readFile(key, today);
    if (plan.isFetch && plan.keys.isEmpty())
        handOver(std::nullopt, false, LogNodes());
    else
        stepDone(LogReadEnd::Whole);
}

void LogManager::readFile(const QString &key, const QString &today)
{
    ++m_read->steps;
    // The daemons may still be adding to today's files.
    const bool isTodays = std::any_of(std::begin(DayFileEndings), std::end(DayFileEndings),
                                      [&](QLatin1StringView ending) { return key == today + ending; });
    const auto cached = isTodays ? mLogData.cend() : mLogData.constFind(key);
    std::optional<LogNodes> known;
    if (cached != mLogData.cend())
        known = *cached;
    mQueue.async([folder = mLogDumpPath, key, known = std::move(known), self = m_self, read = m_read] {
        LogParseOperation operation(folder, key, read->stop.get_token());
        if (known)
            operation.parsedData = known;
        else
            operation.main();
        if (read->stop.stop_requested())
            return;
        onMainThread([self, read, key, wasParsed = !known, reason = operation.reason,
                      list = std::move(operation.parsedData)] {
            if (!*self || (*self)->m_read != read)
                return;
            if (!list && read->unread++ == 0)
                read->firstUnread = key + u": "_s + reason;
            (*self)->handOver(key, wasParsed, list);
        });
    });
}

void LogManager::handOver(const std::optional<QString> &key, bool wasParsed,
                          const std::optional<LogNodes> &list)
{
    currentLog = key;
    isParsed = wasParsed;
    const auto self = m_self;
    const auto read = m_read;
    master.xmlParsed(list);
    if (*self && m_read == read)
        stepDone(LogReadEnd::Whole);
}

void LogManager::stepDone(LogReadEnd end)
{
    if (--m_read->steps > 0)
        return;
    if (const int unread = std::exchange(m_read->unread, 0))
        QNLogger::logMonitorTrace(u"Activity logs: %1 day files of %2 can't be read, the first is %3"_s.arg(
            QString::number(unread), mLogDumpPath, m_read->firstUnread));
    const auto self = m_self;
    const auto read = m_read;
    if (std::exchange(read->isForWebOrder, false))
        master.setDeleteFromWeb(false);
    if (*self && m_read == read)
        master.readEnded(end);
}

// ---- Deleting -----------------------------------------------------------------------------------------------

/// Records on their way out of their files; touched by the queue alone.
struct LogManager::Deletion {
    std::vector<Day> days;
    std::optional<LogFileRemoval> files;
    LogNodes kept;
    std::optional<LogWork> work;

    /// True once the records are out of the file.
    bool carryOut(const Day &day, const QString &path);
};

bool LogManager::Deletion::carryOut(const Day &day, const QString &path)
{
    // The files go before the records, because on a full disk they make the room that the rewrite needs, and
    // because a record without a log can be deleted again, while a log without a record is never seen any more.
    // But they can't come back, so first the rewrite is known to fail for no other cause.
    if (!DayFileEdit::canEdit(path))
        return false;
    for (const LogNodePtr &node : day.nodes)
        files->remove(node->logfile);
    return DayFileEdit::removeRecords(path, day.nodes) != DayFileEdit::Outcome::Failed;
}

void LogManager::deleteNodes(LogNodes nodes, DeletionEnded ended)
{
    const auto deletion = std::make_shared<Deletion>();
    deletion->days = takeFromCache(std::move(nodes));
    deletion->work.emplace(qsizetype(deletion->days.size()));
    mQueue.async([deletion] {
        deletion->files.emplace(
            QStringList{pathValue("LogsDumpPath"_L1, {}), pathValue("LogsDumpOldPath"_L1, {})},
            QStringList{pathValue("SessionLogsNewFolderPath"_L1, {}),
                        pathValue("SessionLogsFolderPath"_L1, {})});
    });
    // One day at a time, so that other work of the pool gets its turn.
    for (std::size_t i = 0; i < deletion->days.size(); ++i) {
        mQueue.async([deletion, i, folder = mLogDumpPath] {
            const auto day = std::exchange(deletion->days[i], {});
            if (!deletion->carryOut(day, folder + u'/' + day.key + ".xml"_L1))
                deletion->kept.insert(deletion->kept.end(), day.nodes.begin(), day.nodes.end());
            deletion->work->dayFileDone();
        });
    }
    mQueue.async([deletion, self = m_self, ended = std::move(ended)] {
        deletion->work.reset();
        onMainThread([deletion, self, ended] {
            if (*self && ended)
                ended(deletion->kept);
        });
    });
}

std::vector<LogManager::Day> LogManager::takeFromCache(LogNodes nodes)
{
    std::vector<Day> days;
    QHash<QString, std::size_t> places;
    // Records of one file share the text of its name, so most are placed without reading it.
    std::unordered_map<const QChar *, std::size_t> sharedPlaces;
    for (LogNodePtr &node : nodes) {
        if (!node)
            continue;
        const QString &key = node->dayKey;
        auto shared = sharedPlaces.find(key.constData());
        if (shared == sharedPlaces.end()) {
            if (!isFileName(key) || !mLogDumpPath.startsWith(u'/'))
                continue;
            const auto place = places.constFind(key);
            shared = sharedPlaces.emplace(key.constData(), place == places.cend() ? days.size() : *place).first;
            if (place == places.cend()) {
                places.insert(key, days.size());
                days.push_back({key, {}});
            }
        }
        days[shared->second].nodes.push_back(std::move(node));
    }
    for (const Day &day : days)
        forget(day);
    return days;
}

void LogManager::forget(const Day &day)
{
    const auto kept = mLogData.find(day.key);
    if (kept == mLogData.end())
        return;
    std::vector<const LogNode *> gone;
    for (const LogNodePtr &node : day.nodes)
        gone.push_back(node.get());
    std::sort(gone.begin(), gone.end(), std::less<>());
    std::erase_if(*kept, [&](const LogNodePtr &node) {
        return std::binary_search(gone.begin(), gone.end(), node.get(), std::less<>());
    });
    if (kept->empty())
        mLogData.erase(kept);
}

// ---- Old session logs ---------------------------------------------------------------------------------------

void LogManager::createOldLogs(UserDefaults &defaults, OldLogsEnded ended)
{
    if (std::exchange(m_askedForOldLogs, true) || !mLogDumpPath.startsWith(u'/') ||
        defaults.value(u"onlyonce"_s).toInt() != 0)
        return;
    const auto work = [folder = mLogDumpPath, today = m_clock.now().date(), &defaults, self = m_self,
                       ended = std::move(ended), held = std::make_shared<LogWork>()] {
        if (!listDayFiles(folder).names.isEmpty())
            return;
        const auto records = OldSessionLogs::createOnce(defaults, folder, today, LogWork::endOfProgram());
        if (!records)
            return;
        onMainThread([self, records = *records, ended] {
            if (!*self)
                return;
            (*self)->logLimit = records;
            if (ended)
                ended(records);
        });
    };
    try {
        startWorkerThread("corvane-oldlogs", work);
    } catch (const std::system_error &error) {
        m_askedForOldLogs = false; // the next time the list is shown
        QNLogger::logMonitorTrace(u"Old session logs wait: "_s + QString::fromUtf8(error.what()));
    }
}
