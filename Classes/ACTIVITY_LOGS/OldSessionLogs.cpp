#include "Classes/ACTIVITY_LOGS/OldSessionLogs.h"

#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Classes/ACTIVITY_LOGS/LineCount.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"
#include "Classes/ACTIVITY_LOGS/LogOperations.h"
#include "Platform/AtomicFile.h"
#include "Platform/FolderNames.h"
#include "Platform/RegularFile.h"
#include "Platform/UserDefaults.h"
#include "Source/Logger/WriteTrace.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype PieceBytes = 256 * 1024;

/// An operation folder, and how the engine writes of each file in a session log there.
struct Operation {
    QLatin1StringView folder;
    QLatin1StringView name; ///< as records of it are numbered
    const char *line = nullptr;
    LineCount::Letters letters = LineCount::Letters::Exact;
};
/// In the order in which a day's records are made. By its own name a deletion would count as a sync.
constexpr Operation Operations[] = {
    {"Backup"_L1, "backup"_L1, "file size:", LineCount::Letters::AnyCase},
    {"Restore"_L1, "restore"_L1, "file size:", LineCount::Letters::AnyCase},
    {"Delete"_L1, "online delete"_L1, "Deleted file", LineCount::Letters::Exact},
    {"Rename"_L1, "rename"_L1, "Renamed file", LineCount::Letters::Exact},
    {"PutBack"_L1, "putback"_L1, "moved file", LineCount::Letters::AnyCase},
};

const Operation *operationOf(const QString &folder)
{
    const auto found = std::find_if(std::begin(Operations), std::end(Operations),
                                    [&](const Operation &operation) { return operation.folder == folder; });
    return found == std::end(Operations) ? nullptr : found;
}
} // namespace

OldSessionLogs::OldSessionLogs(QString dumpPath, QDate today, std::stop_token stop)
    : m_dumpPath(std::move(dumpPath)), m_parent(QFileInfo(m_dumpPath).path()), m_today(today),
      m_stop(std::move(stop))
{
}

std::optional<int> OldSessionLogs::createOnce(UserDefaults &defaults, const QString &dumpPath, QDate today,
                                              const std::stop_token &stop)
{
    const auto set = [&](int value) {
        defaults.setValue(u"onlyonce"_s, value);
        traceFailure(defaults.path(), defaults.synchronize());
    };
    set(1);
    const auto records = OldSessionLogs(dumpPath, today, stop).createOldLogs();
    if (!records)
        set(0);
    return records;
}

std::optional<int> OldSessionLogs::createOldLogs()
{
    for (const Operation &operation : Operations)
        m_names.insert(operation.folder, namesOf(operation.folder));
    // Nothing is written before all is counted, which takes the time: a folder with some of the days would not
    // be taken for an empty one at the next start, and the others would never come.
    std::vector<LogNodes> days;
    for (int back = 0; back <= Days && m_logLimit < MostRecords && !m_stop.stop_requested(); ++back) {
        const QString day = LogFileNames::dayName(m_today.addDays(-back));
        LogNodes nodes;
        for (const Operation &operation : Operations) {
            const LogNodes ofOne = getNodesForOperation(operation.folder, day);
            nodes.insert(nodes.end(), ofOne.begin(), ofOne.end());
        }
        if (!nodes.empty())
            days.push_back(std::move(nodes));
    }
    if (m_stop.stop_requested())
        return std::nullopt;
    int written = 0;
    for (const LogNodes &nodes : days) {
        if (writeToXMLFile(nodes.front()->logname, nodes))
            written += int(nodes.size());
    }
    return written;
}

OldSessionLogs::Names OldSessionLogs::namesOf(const QString &operation) const
{
    constexpr qsizetype DayUnits = 10;
    Names names;
    // A folder that isn't there has no logs; one that breaks off has those that came.
    const FileResult listed = forEachNameIn(m_parent + u'/' + operation, [&](const QByteArray &bytes) {
        const QString name = QFile::decodeName(bytes);
        const auto date = LogFileNames::parseDateFromFileName(name.left(DayUnits));
        if (LogFileNames::getLogDate(name) && date <= m_today && date >= m_today.addDays(-Days))
            names[name.left(DayUnits)].append(name);
        return !m_stop.stop_requested();
    });
    if (!listed && listed.error() != ENOENT)
        traceFailure(m_parent + u'/' + operation, listed);
    for (auto &[day, ofDay] : names)
        ofDay.sort();
    return names;
}

LogNodes OldSessionLogs::getNodesForOperation(const QString &operation, const QString &day)
{
    const Names &names = m_names[operation];
    const auto found = names.find(day);
    return found == names.end() ? LogNodes() : createNodes(found->second, operation);
}

LogNodes OldSessionLogs::createNodes(const QStringList &names, const QString &operation)
{
    LogNodes nodes;
    for (const QString &name : names) {
        if (m_logLimit == MostRecords)
            break;
        const QString base = m_parent + u'/' + operation + u'/' + name;
        if (QFile::exists(base + ".summary"_L1))
            continue;
        const auto counts = countsOf(base, operation, m_stop);
        if (const LogNodePtr node = counts ? record(base, name, operation, *counts) : nullptr) {
            nodes.push_back(node);
            ++m_logLimit;
        }
    }
    return nodes;
}

std::optional<OldSessionLogs::Counts> OldSessionLogs::countsOf(const QString &path, const QString &operation,
                                                               const std::stop_token &stop)
{
    const Operation *const kind = operationOf(operation);
    const RegularFile file = RegularFile::open(path);
    if (!kind || !file)
        return std::nullopt;
    LineCount files(kind->line, kind->letters);
    LineCount successes("successfully"_ba, LineCount::Letters::AnyCase);
    LineCount scheduled("mode : scheduled backup"_ba, LineCount::Letters::AnyCase);
    std::vector<char> piece(PieceBytes);
    for (;;) {
        const ssize_t got =
            uninterrupted([&] { return ::read(file.descriptor(), piece.data(), piece.size()); });
        if (got < 0 || stop.stop_requested())
            return std::nullopt;
        if (got == 0)
            break;
        const QByteArrayView bytes(piece.data(), got);
        for (LineCount *const count : {&files, &successes, &scheduled})
            count->feed(bytes);
    }
    return Counts{files.lines(), successes.lines(), operation == "Backup"_L1 && scheduled.lines() > 0};
}

LogNodePtr OldSessionLogs::record(const QString &path, const QString &name, const QString &operation,
                                  const Counts &counts)
{
    constexpr qsizetype DayUnits = 10;
    const Operation *const kind = operationOf(operation);
    const auto date = LogFileNames::getLogDate(name);
    if (!kind || !date || counts.files == 0)
        return nullptr;
    auto node = std::make_shared<LogNode>();
    node->datetime = *date;
    node->files = QString::number(counts.files);
    node->status = counts.successes > 0 ? u"Success"_s : u"-----"_s;
    node->duration = u"--:--:--"_s;
    node->optype =
        LogOperations::getOptypeForOperationName(counts.isScheduled ? u"schedule"_s : QString(kind->name));
    node->logfile = path;
    node->logname = date->left(DayUnits);
    node->dayKey = node->logname;
    return node;
}

bool OldSessionLogs::writeToXMLFile(const QString &name, const LogNodes &nodes) const
{
    const QString path = m_dumpPath + u'/' + name + ".xml"_L1;
    // The daemon may have begun the day's file since the folder was found empty.
    const auto isFree = [&] { return !QFile::exists(path); };
    const QByteArray text = DayFile::getXMLfromNodes(nodes).toUtf8();
    return traceFailure(path, AtomicFile::write(path, text, {.mayReplace = isFree}));
}
