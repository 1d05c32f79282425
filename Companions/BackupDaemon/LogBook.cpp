#include "Companions/BackupDaemon/LogBook.h"

#include "Companions/BackupDaemon/BackupJob.h"
#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Protection = 7;
constexpr int Sync = 12;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString listText(const std::vector<LoggedFile> &files, std::size_t from, std::size_t to)
{
    QString text;
    for (std::size_t place = from; place < std::min(to, files.size()); ++place)
        text += files[place].path + u'\n';
    return text;
}
} // namespace

LogBook::LogBook(PathTable table) : m_table(std::move(table))
{
}

QString LogBook::dayFolder() const
{
    return QDir::cleanPath(m_table.path(u"LogsDumpPath"_s));
}

QString LogBook::sessionFolder() const
{
    return QDir::cleanPath(m_table.path(u"SessionLogsNewFolderPath"_s));
}

QString LogBook::dayPath(const QString &logname) const
{
    return dayFolder() + u'/' + logname + u".xml"_s;
}

void LogBook::setLanguage(LogLanguage language)
{
    m_language = language;
}

void LogBook::setLinkSentences(bool on)
{
    m_withLinks = on;
}

LogLanguage LogBook::language() const
{
    if (m_language)
        return *m_language;
    const QVariantMap preferences =
        readPropertyList(QDir::homePath() + u"/Library/Preferences/com.halvernet.Corvane.plist"_s).toMap();
    const QString first = preferences.value(u"AppleLanguages"_s).toList().value(0).toString();
    return logLanguageOf(first.left(2)).value_or(LogLanguage::English);
}

LogBook::Entry LogBook::begin(const QString &account, int optype, const QDateTime &start) const
{
    QDateTime own = start;
    while (QFileInfo::exists(sessionPath(optype, own)))
        own = own.addSecs(1);
    return entry(account, optype, own);
}

LogBook::Entry LogBook::entry(const QString &account, int optype, const QDateTime &start) const
{
    Entry entry{{account, optype, start, std::nullopt, LogStatus::InProgress, {}, 0}, {}};
    entry.record.datetime = start.toString(u"MM-dd-yyyy HH:mm:ss");
    entry.record.uname = account;
    entry.record.files = u"0"_s;
    entry.record.status = LogStatus::InProgress;
    entry.record.duration = UnknownDuration;
    entry.record.optype = QString::number(optype);
    entry.record.logfile = sessionPath(optype, start);
    entry.record.logname = dayName(start.date(), dayFileOf(optype));
    return entry;
}

void LogBook::conclude(Entry &entry, const QString &status, const QDateTime &end,
                       std::chrono::milliseconds duration)
{
    entry.story.ended = end;
    entry.story.status = status;
    entry.record.status = status;
    entry.record.duration = clockText(duration);
    entry.record.files = QString::number(entry.story.count);
}

bool LogBook::write(const Entry &entry) const
{
    for (const TextFile &file : textFiles(entry)) {
        if (!writeWholeFile(file.path, file.text))
            return false;
    }
    return putRecord(entry.record);
}

bool LogBook::putRecord(const LogRecord &record) const
{
    const QString path = dayPath(record.logname);
    auto records = QFileInfo::exists(path) ? dayRecords(bytesOf(path)) : LogRecords();
    if (!records)
        return false;
    const auto same = [&record](const LogRecord &other) { return other.logfile == record.logfile; };
    if (const auto old = std::find_if(records->begin(), records->end(), same); old != records->end())
        *old = record;
    else
        records->push_back(record);
    return writeWholeFile(path, dayFileBytes(*records));
}

std::vector<LogBook::TextFile> LogBook::textFiles(const Entry &entry) const
{
    const SessionStory &story = entry.story;
    const QString &path = entry.record.logfile;
    QString details = sessionLogText(story, language());
    QString summary = summaryText(story, language());
    if (m_withLinks) {
        const LinkSentences sentences = linkSentences(language(), m_table);
        details += sentences.details;
        summary += sentences.summary;
    }
    std::vector<TextFile> files{{path, details.toUtf8()}};
    if (!story.ended)
        return files;
    if (story.optype != Sync) {
        files.push_back({path + u".summary"_s, summary.toUtf8()});
        return files;
    }
    const std::size_t half = story.files.size() / 2;
    const std::size_t last = std::max<std::size_t>(story.files.size(), 1) - 1;
    files.push_back({path + u".sync-up"_s, listText(story.files, 0, half).toUtf8()});
    files.push_back({path + u".sync-down"_s, listText(story.files, half, last).toUtf8()});
    if (last > half) // a short job renames nothing
        files.push_back({path + u".rename"_s, listText(story.files, last, story.files.size()).toUtf8()});
    files.push_back({path + u".delete"_s, listText(story.files, 0, 1).toUtf8()});
    return files;
}

QString LogBook::dayName(QDate day, DayFile file)
{
    static const QString endings[] = {{}, u"_cdp"_s, u"_sync"_s};
    return day.toString(u"MM-dd-yyyy") + endings[static_cast<int>(file)];
}

LogBook::DayFile LogBook::dayFileOf(int optype)
{
    if (optype == Protection)
        return DayFile::Protection;
    return optype == Sync ? DayFile::Sync : DayFile::Plain;
}

QString LogBook::sessionPath(int optype, const QDateTime &start) const
{
    const QString ending = optype == Sync ? u"_sync"_s : QString();
    return sessionFolder() + u'/' + operationFolder(optype) + u'/' + start.toString(u"MM-dd-yyyy-HH-mm-ss") +
           ending;
}
