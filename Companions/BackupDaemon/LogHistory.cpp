#include "Companions/BackupDaemon/LogHistory.h"

#include "Companions/BackupDaemon/BackupJob.h"
#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::array PlainOperations = {2, 2, 1, 2, 3, 2, 13, 14, 5, 2, 6, 9, 19, 23, 8};
constexpr int SecondsOfDay = 86'400;

/// One in `many`.
bool happens(QRandomGenerator &random, int many)
{
    return random.bounded(many) == 0;
}

QString statusBy(QRandomGenerator &random)
{
    if (happens(random, 9))
        return LogStatus::Failure;
    return happens(random, 15) ? LogStatus::Cancelled : LogStatus::Success;
}

/// Most jobs are the account's own; the others are of people who use this machine too, or of nobody.
QString ownerBy(QRandomGenerator &random, const QString &account)
{
    switch (random.bounded(10)) {
    case 0:
        return u"boris@example.com"_s;
    case 1:
        return u"千佳@example.jp"_s;
    case 2:
        return {};
    default:
        return account;
    }
}

int operationIn(LogBook::DayFile file, int place)
{
    switch (file) {
    case LogBook::DayFile::Protection:
        return 7;
    case LogBook::DayFile::Sync:
        return 12;
    case LogBook::DayFile::Plain:
        break;
    }
    return PlainOperations[static_cast<std::size_t>(place) % PlainOperations.size()];
}

/// A day as far as it has come.
struct Day {
    QDate date;
    int span = SecondsOfDay; ///< how many seconds of it have passed
    bool hasTexts = false;   ///< its session logs are there still
};

std::vector<LogBook::Entry> entriesOf(const LogBook &logs, const QString &account, const Day &day,
                                      LogBook::DayFile file)
{
    QRandomGenerator random(static_cast<quint32>(day.date.toJulianDay() * 3 + static_cast<int>(file)));
    std::vector<LogBook::Entry> entries;
    for (int place = 0; place < LogHistory::RecordsInFile && day.span >= LogHistory::RecordsInFile; ++place) {
        const int second = day.span / LogHistory::RecordsInFile * place;
        const QDateTime start(day.date, QTime::fromMSecsSinceStartOfDay(second * 1000));
        const int optype = operationIn(file, place);
        LogBook::Entry entry = logs.entry(ownerBy(random, account), optype, start);
        entry.story.count = random.bounded(1, 4'000);
        if (day.hasTexts)
            entry.story.files = backupSetOf(account, random.bounded(2, 40));
        const std::chrono::seconds duration(random.bounded(1, 5'000));
        LogBook::conclude(entry, statusBy(random), start.addSecs(duration.count()), duration);
        if (file == LogBook::DayFile::Sync)
            entry.record.filesinsync = QString::number(random.bounded(9'000));
        entries.push_back(std::move(entry));
    }
    return entries;
}

bool writeTexts(const LogBook &logs, const std::vector<LogBook::Entry> &entries, LogHistory::Outcome &outcome)
{
    for (const LogBook::Entry &entry : entries) {
        for (const auto &file : logs.textFiles(entry)) {
            if (!writeQuickly(file.path, file.text))
                return false;
            ++outcome.files;
        }
    }
    return true;
}

bool emptyFolder(const QString &path)
{
    // What may not be entered can't be removed either.
    QDirIterator folders(path, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                         QDirIterator::Subdirectories);
    while (folders.hasNext()) {
        if (!QFile::setPermissions(folders.next(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
            return false;
    }
    return !QFileInfo::exists(path) || QDir(path).removeRecursively();
}
} // namespace

LogHistory::LogHistory(PathTable table) : m_table(std::move(table))
{
}

LogHistory::Outcome LogHistory::write(const LogBook &logs, const QString &account, int days,
                                      const QDateTime &now) const
{
    Outcome outcome;
    for (int back = 0; back < days; ++back) {
        const Day day{now.date().addDays(-back), back == 0 ? QTime(0, 0).secsTo(now.time()) : SecondsOfDay,
                      back < DaysWithSessionLogs};
        for (const auto file :
             {LogBook::DayFile::Protection, LogBook::DayFile::Sync, LogBook::DayFile::Plain}) {
            const auto entries = entriesOf(logs, account, day, file);
            if (entries.empty()) // the day has just begun
                continue;
            QByteArray bytes = dayFileHead();
            for (const LogBook::Entry &entry : entries)
                bytes += recordBlock(entry.record);
            outcome.written =
                writeQuickly(logs.dayPath(LogBook::dayName(day.date, file)), bytes + dayFileTail()) &&
                (!day.hasTexts || writeTexts(logs, entries, outcome));
            if (!outcome.written)
                return outcome;
            ++outcome.files;
            outcome.records += static_cast<int>(entries.size());
        }
    }
    return outcome;
}

bool LogHistory::clear() const
{
    const bool current = emptyFolder(m_table.path(u"SessionLogsNewFolderPath"_s));
    const bool archive = emptyFolder(m_table.path(u"SessionLogsFolderPath"_s));
    return current && archive;
}

LogHistory::Outcome LogHistory::writeOldLogs(const LogBook &logs, const QString &account, int count,
                                             const QDateTime &now) const
{
    constexpr std::array Operations = {2, 3, 5, 6, 9};
    constexpr qint64 Span = qint64(29) * SecondsOfDay;
    Outcome outcome;
    for (int place = 0; place < count; ++place) {
        const int optype = Operations[static_cast<std::size_t>(place) % Operations.size()];
        const QDateTime start = now.addSecs(-1 - Span * place / count);
        LogBook::Entry entry = logs.begin(account, optype, start);
        entry.story.files = backupSetOf(account, 3 + place % 20);
        entry.story.ended = start.addSecs(60);
        entry.story.status = place % 4 == 3 ? LogStatus::Failure : LogStatus::Success;
        // The first file alone: the summary would say that there is a record.
        const auto text = logs.textFiles(entry).front();
        outcome.written = writeQuickly(text.path, text.text);
        if (!outcome.written)
            break;
        ++outcome.files;
    }
    return outcome;
}

LogHistory::Outcome LogHistory::writeOldLayout(const QString &account, const QDateTime &now) const
{
    static constexpr std::array<const char *, 5> Files = {"Backup", "Restore", "Delete", "Rename",
                                                          "Archive Cleanup"};
    static constexpr std::array<const char *, 5> Folders = {"Automatic_Sync_1", "Schedule_2", "Sync_3",
                                                            "Backup_4", "Restore_5"};
    Outcome outcome;
    const auto put = [&](const QString &path, int optype, const QDateTime &start) {
        const SessionStory story{
            account, optype, start, start.addSecs(60), LogStatus::Success, backupSetOf(account, 5), 5};
        outcome.written &= writeQuickly(path, sessionLogText(story, LogLanguage::English).toUtf8());
        ++outcome.files;
    };
    for (const QString &key : {u"SessionLogsNewFolderPath"_s, u"SessionLogsFolderPath"_s}) {
        const QDir root(m_table.path(key));
        if (key == "SessionLogsFolderPath"_L1 && !root.exists())
            continue;
        QDateTime start = now.addDays(-400);
        for (const char *name : Files) {
            start = start.addSecs(3'600);
            put(root.filePath(QLatin1StringView(name) + start.toString(u" MM-dd-yyyy-HH-mm-ss")), 1, start);
        }
        for (const char *name : Folders) {
            start = start.addSecs(3'600);
            put(root.filePath(QLatin1StringView(name) + start.toString(u"/MM-dd-yyyy-HH-mm-ss")), 2, start);
        }
    }
    return outcome;
}

LogHistory::Outcome LogHistory::showArchive(bool shown, const QString &account, const QDateTime &now) const
{
    constexpr int Days = 25;
    Outcome outcome;
    QVariantMap settings = readPropertyList(m_table.path(u"SessionsLogsPlistPath"_s)).toMap();
    settings.insert(u"shouldShowOldLogs"_s, shown ? u"1"_s : u"0"_s);
    for (int back = 0; shown && back < Days; ++back) {
        const QDateTime start(now.date().addDays(-1'200 - back), QTime(21, 30, back));
        LogRecord record;
        record.datetime = QLocale::c().toString(start, u"MMM dd, yyyy hh:mm:ss AP"_s);
        record.uname = account;
        record.files = QString::number(100 + back);
        record.status = LogStatus::Success;
        record.duration = u"00:12:00"_s;
        record.optype = u"2"_s;
        record.logname = LogBook::dayName(start.date(), LogBook::DayFile::Plain);
        record.logfile =
            m_table.path(u"SessionLogsFolderPath"_s) + start.toString(u"'/Backup/'MM-dd-yyyy-HH-mm-ss");
        const SessionStory story{
            account, 2, start, start.addSecs(720), LogStatus::Success, backupSetOf(account, 8), 8};
        const QString dayFile = m_table.path(u"LogsDumpOldPath"_s) + u'/' + record.logname + u".xml"_s;
        outcome.written &= writeQuickly(record.logfile, sessionLogText(story, LogLanguage::English).toUtf8()) &&
                           writeQuickly(dayFile, dayFileBytes({record}));
        ++outcome.records;
    }
    outcome.written &= writePropertyList(m_table.path(u"SessionsLogsPlistPath"_s), settings);
    return outcome;
}

bool writeQuickly(const QString &path, const QByteArray &bytes)
{
    const QString folder = path.left(path.lastIndexOf(u'/'));
    const QString fresh = path + u".new"_s;
    QFile file(fresh);
    if (!file.open(QIODevice::WriteOnly) && !(QDir().mkpath(folder) && file.open(QIODevice::WriteOnly)))
        return false;
    const bool isWhole = file.write(bytes) == bytes.size() && file.flush();
    file.close();
    return isWhole &&
           std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData()) == 0;
}
