// The commands that write activity logs, of one job or of years, and those about their deletion.

#include "Companions/BackupDaemon/BackupDaemon.h"
#include "Companions/BackupDaemon/HostileLogs.h"
#include "Companions/BackupDaemon/LogHistory.h"
#include "Companions/Common/PropertyList.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
constexpr int ScheduledBackup = 2;
constexpr int Protection = 7;
constexpr int Sync = 12;
constexpr qint64 LargestLog = qint64(16) << 30;
constexpr std::chrono::seconds ReadyJob{95}; ///< how long a job took that is only written down

CommandResult told(const LogHistory::Outcome &outcome)
{
    const QString text = u"%1 files, %2 records"_s.arg(outcome.files).arg(outcome.records);
    return outcome.written ? CommandResult::ok(text) : CommandResult::failed(u"cannot write; so far "_s + text);
}

/// "2G", "300K" or a number of bytes; empty where it is none, or too large.
std::optional<qint64> sizeOf(QString word)
{
    static const QString units = u"KMG"_s;
    const qsizetype unit = word.isEmpty() ? -1 : units.indexOf(word.back());
    if (unit >= 0)
        word.chop(1);
    bool isNumber = false;
    const qint64 number = word.toLongLong(&isNumber);
    if (!isNumber || number < 0 || number > LargestLog >> (10 * (unit + 1)))
        return std::nullopt;
    return number << (10 * (unit + 1));
}

/// Makes a session log that large: its text, a gap that takes no room on the disk, and an end.
bool stretch(const QString &path, qint64 size)
{
    const QByteArray end = "\nThe end of a long log.\n";
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.resize(size) &&
           file.seek(std::max(file.size() - end.size(), qint64(0))) && file.write(end) == end.size() &&
           file.flush();
}
} // namespace

void BackupDaemon::addLogCommands()
{
    const struct {
        const char *word, *usage;
        int optype;
        QString status;
    } kinds[] = {
        {"log success",
         "log success [ACCOUNT] [DAYS]  a job that ended well, so many days ago: session log and record",
         ScheduledBackup, LogStatus::Success},
        {"log failure", "log failure [ACCOUNT] [DAYS]  one that has failed", ScheduledBackup,
         LogStatus::Failure},
        {"log progress", "log progress [ACCOUNT] [DAYS] a record In Progress, with no job behind it",
         ScheduledBackup, LogStatus::InProgress},
        {"log cdp", "log cdp [ACCOUNT] [DAYS]      one of continuous protection", Protection,
         LogStatus::Success},
        {"log sync", "log sync [ACCOUNT] [DAYS]     one of sync, with its four lists", Sync,
         LogStatus::Success},
    };
    for (const auto &kind : kinds) {
        m_commands.add(
            QLatin1StringView(kind.word), QLatin1StringView(kind.usage),
            [this, optype = kind.optype, status = kind.status](const QStringList &words, const QString &) {
                return logOne(optype, status, words);
            });
    }
    m_commands.add(u"log text"_s,
                   u"log text FILE                 a job whose session log says what FILE says"_s,
                   [this](const QStringList &, const QString &rest) { return logText(rest); });
    m_commands.add(u"log big"_s,
                   u"log big SIZE                  one whose session log is that large: 2G, 300M"_s,
                   [this](const QStringList &words, const QString &) { return logBig(words); });
    m_commands.add(u"log language"_s,
                   u"log language en|es|ja         what session logs are written in from now on"_s,
                   [this](const QStringList &words, const QString &) { return setLogLanguage(words); });
    m_commands.add(u"log links"_s,
                   u"log links on|off              whether they hold the sentences with links"_s,
                   [this](const QStringList &words, const QString &) {
                       const bool on = words == QStringList{u"on"_s};
                       if (!on && words != QStringList{u"off"_s})
                           return CommandResult::failed(u"on or off"_s);
                       m_logs.setLinkSentences(on);
                       return CommandResult::ok();
                   });
    m_commands.add(u"web delete"_s, u"web delete FILE OPERATION     the web orders the deletion of a log"_s,
                   [this](const QStringList &, const QString &rest) { return deleteFromWeb(rest); });
}

void BackupDaemon::addHistoryCommands()
{
    const auto addHistory = [this](const QString &word, const QString &usage, int days) {
        m_commands.add(word, usage, [this, days](const QStringList &, const QString &) {
            const LogHistory history(m_table);
            if (!history.clear())
                return CommandResult::failed(u"the old logs cannot be removed"_s);
            const auto outcome =
                history.write(m_logs, m_files.signedInAccount(), days, QDateTime::currentDateTime());
            if (m_log) // the job that runs has its record still
                writeLog();
            return told(outcome);
        });
    };
    addHistory(u"history 3y"_s,
               u"history 3y                    the logs of 1,100 days, in the place of all logs"_s,
               LogHistory::ThreeYears);
    addHistory(u"history week"_s, u"history week                  those of a week"_s, 7);
    addHistory(u"history none"_s, u"history none                  no log at all"_s, 0);
    m_commands.add(u"history hostile"_s,
                   u"history hostile               one of each kind of damage, a day each"_s,
                   [this](const QStringList &, const QString &) {
                       const QStringList failed =
                           HostileLogs(m_table).write(m_files.signedInAccount(), QDateTime::currentDateTime());
                       return failed.isEmpty()
                                  ? CommandResult::ok()
                                  : CommandResult::failed(u"cannot make: "_s + failed.join(u", "_s));
                   });
    m_commands.add(u"history victims"_s,
                   u"history victims               whether all files stand that hostile records point at"_s,
                   [this](const QStringList &, const QString &) {
                       const QStringList lost = HostileLogs(m_table).lostVictims();
                       return lost.isEmpty() ? CommandResult::ok()
                                             : CommandResult::failed(u"lost: "_s + lost.join(u", "_s));
                   });
    m_commands.add(u"old logs"_s, u"old logs COUNT                session logs that have no records"_s,
                   [this](const QStringList &words, const QString &) {
                       constexpr int Most = 10'000;
                       const int count = words.value(0).toInt();
                       if (words.size() != 1 || count < 1 || count > Most)
                           return CommandResult::failed(u"needs a number, 1 to %1"_s.arg(Most));
                       return told(LogHistory(m_table).writeOldLogs(m_logs, m_files.signedInAccount(), count,
                                                                    QDateTime::currentDateTime()));
                   });
    m_commands.add(u"old layout"_s,
                   u"old layout                    logs that lie flat, as older versions left them"_s,
                   [this](const QStringList &, const QString &) {
                       return told(LogHistory(m_table).writeOldLayout(m_files.signedInAccount(),
                                                                      QDateTime::currentDateTime()));
                   });
    m_commands.add(u"old archive"_s, u"old archive on|off            an archive of older logs, shown or not"_s,
                   [this](const QStringList &words, const QString &) {
                       const bool on = words == QStringList{u"on"_s};
                       if (!on && words != QStringList{u"off"_s})
                           return CommandResult::failed(u"on or off"_s);
                       return told(LogHistory(m_table).showArchive(on, m_files.signedInAccount(),
                                                                   QDateTime::currentDateTime()));
                   });
}

CommandResult BackupDaemon::logOne(int optype, const QString &status, const QStringList &words)
{
    constexpr qint64 Files = 8;
    QString account = m_files.signedInAccount();
    QDateTime now = QDateTime::currentDateTime();
    for (const QString &word : words) {
        bool isNumber = false;
        const int days = word.toInt(&isNumber);
        if (isNumber)
            now = now.addDays(-days);
        else
            account = word;
    }
    const bool runs = status == LogStatus::InProgress;
    LogBook::Entry entry = m_logs.begin(account, optype, runs ? now : now.addSecs(-ReadyJob.count()));
    if (!runs) {
        entry.story.files = backupSetOf(account, Files);
        entry.story.count = Files;
        LogBook::conclude(entry, status, now, ReadyJob);
    }
    return m_logs.write(entry) ? CommandResult::ok(entry.record.logfile.section(u'/', -1))
                               : CommandResult::failed(u"the log cannot be written"_s);
}

CommandResult BackupDaemon::logText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return CommandResult::failed(u"cannot read "_s + path);
    const QByteArray text = file.readAll();
    const CommandResult result = logOne(ScheduledBackup, LogStatus::Success, {});
    const QString log = m_logs.sessionFolder() + u"/Backup/"_s + result.text;
    if (result.done && !writeWholeFile(log, text))
        return CommandResult::failed(u"the log cannot be written"_s);
    return result;
}

CommandResult BackupDaemon::logBig(const QStringList &words)
{
    const auto size = sizeOf(words.value(0));
    if (!size || words.size() != 1)
        return CommandResult::failed(u"needs a size up to 16G"_s);
    const CommandResult result = logOne(ScheduledBackup, LogStatus::Success, {});
    if (result.done && !stretch(m_logs.sessionFolder() + u"/Backup/"_s + result.text, *size))
        return CommandResult::failed(u"the log cannot be made that large"_s);
    return result;
}

CommandResult BackupDaemon::setLogLanguage(const QStringList &words)
{
    const auto language = logLanguageOf(words.value(0));
    if (!language || words.size() != 1)
        return CommandResult::failed(u"en, es or ja"_s);
    m_logs.setLanguage(*language);
    return CommandResult::ok();
}

CommandResult BackupDaemon::deleteFromWeb(const QString &rest)
{
    const QString file = rest.section(u' ', 0, 0);
    const QString operation = rest.section(u' ', 1).trimmed();
    if (operation.isEmpty())
        return CommandResult::failed(u"needs the name of a session log and an operation"_s);
    m_server.send(
        {{u"type"_s, u"RemoteManage"_s},
         {u"data"_s,
          QJsonObject{{u"ChannelType"_s, u"DeleteLog"_s}, {u"logFile"_s, file}, {u"operation"_s, operation}}}});
    return CommandResult::ok();
}
