#include "Companions/BackupDaemon/HostileLogs.h"

#include "Companions/BackupDaemon/LogHistory.h"
#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray VictimText = "This file belongs to nobody's log.\n";
constexpr std::array VictimNames = {"letter.txt",      "letter.txt.summary", "letter.txt_info",
                                    "behind-link.txt", "above.txt",          "folder/inside.txt"};

/// Whatever stood at the path makes room, a folder with all that it holds.
bool makeRoom(const QString &path)
{
    const QFileInfo old(path);
    if (old.isDir() && !old.isSymLink())
        return QDir(path).removeRecursively();
    return (!old.exists() && !old.isSymLink()) || QFile::remove(path);
}

bool linkTo(const QString &target, const QString &path)
{
    return makeRoom(path) && ::symlink(QFile::encodeName(target), QFile::encodeName(path)) == 0;
}

bool makePipe(const QString &path)
{
    return makeRoom(path) && ::mkfifo(QFile::encodeName(path), S_IRUSR | S_IWUSR) == 0;
}

bool makeFolder(const QString &path)
{
    return makeRoom(path) && QDir().mkpath(path) && writeQuickly(path + u"/inside.txt"_s, VictimText);
}

bool makeUnreadable(const QString &path, const QByteArray &bytes)
{
    return makeRoom(path) && writeQuickly(path, bytes) && ::chmod(QFile::encodeName(path), 0) == 0;
}

/// A well-formed file of 200 MB, written piece by piece.
bool makeHuge(const QString &path, const QByteArray &block)
{
    constexpr qint64 Size = 200'000'000;
    QFile file(path);
    if (!makeRoom(path) || !file.open(QIODevice::WriteOnly) || file.write(dayFileHead()) < 0)
        return false;
    const QByteArray piece = block.repeated(1'000);
    while (file.pos() < Size) {
        if (file.write(piece) != piece.size())
            return false;
    }
    return file.write(dayFileTail()) > 0 && file.flush();
}

QByteArray entityBomb()
{
    QByteArray bytes = "<?xml version=\"1.0\"?>\n<!DOCTYPE records [\n<!ENTITY a0 \"boom\">\n";
    for (int level = 1; level < 10; ++level) {
        const QByteArray inner = "&a" + QByteArray::number(level - 1) + ';';
        bytes += "<!ENTITY a" + QByteArray::number(level) + " \"" + inner.repeated(10) + "\">\n";
    }
    return bytes + "]>\n<records>\n<record>\n\t<status>&a9;</status>\n</record>\n</records>\n";
}

struct DamagedBytes {
    const char *name;
    QByteArray bytes;
};

/// Damage that lies in the bytes. `record` is the block of a good record, which stands in most of them.
std::vector<DamagedBytes> damagedBytes(const QByteArray &record)
{
    constexpr int Levels = 100'000;
    const QByteArray whole = dayFileHead() + record + dayFileTail();
    const QByteArray body = "<records>\n" + record + "</records>\n";
    const QString text = QString::fromUtf8(body);
    const QString wide = u"\ufeff<?xml version=\"1.0\" encoding=\"utf-16\"?>\n"_s + text;
    return {
        {"malformed", QByteArray(whole).replace("</status>", "</state>")},
        {"truncated", whole.left(whole.size() / 2)},
        {"empty", {}},
        {"no XML", "MZ this is no day file\n"},
        {"garbage behind the end", whole + "<records/>more"},
        {"entity bomb", entityBomb()},
        {"external entity",
         "<?xml version=\"1.0\"?>\n<!DOCTYPE records [<!ENTITY out SYSTEM \"file:///etc/passwd\">]>\n" +
             QByteArray(body).replace("<content>", "<content>&out;")},
        {"document type", "<?xml version=\"1.0\"?>\n<!DOCTYPE records>\n" + body},
        {"deep nesting", "<records>" + QByteArray("<record>").repeated(Levels) +
                             QByteArray("</record>").repeated(Levels) + "</records>"},
        {"unknown elements",
         QByteArray(whole).replace("<content>", "<colour kind=\"new\">blue<deep/></colour>\n\t<content>")},
        {"Latin-1 as UTF-8", QByteArray(whole).replace("<content>", "<content>ma\xf1"
                                                                    "ana")},
        {"UTF-16", QByteArray(reinterpret_cast<const char *>(wide.utf16()), wide.size() * 2)},
        {"unknown encoding", QByteArray(whole).replace("utf-8", "x-none")},
        {"NUL", QByteArray(whole).replace("<content>", QByteArray("<content>\0", 10))},
    };
}

/// Damage that lies in what stands where a file should be.
using MakeDamage = std::function<bool(const QString &path)>;
struct DamagedPlace {
    const char *name;
    MakeDamage make;
};

std::vector<DamagedPlace> damagedPlaces(const QByteArray &record)
{
    const QByteArray whole = dayFileHead() + record + dayFileTail();
    return {
        {"unreadable", [whole](const QString &path) { return makeUnreadable(path, whole); }},
        {"200 MB", [record](const QString &path) { return makeHuge(path, record); }},
        {"a folder", makeFolder},
        {"a FIFO", makePipe},
        {"a device", [](const QString &path) { return linkTo(u"/dev/zero"_s, path); }},
        {"a link to nowhere", [](const QString &path) { return linkTo(u"/nonexistent"_s, path); }},
        {"a link to itself", [](const QString &path) { return linkTo(path, path); }},
    };
}
} // namespace

HostileLogs::HostileLogs(PathTable table) : m_logs(std::move(table))
{
}

QString HostileLogs::victimFolder() const
{
    return QDir::homePath() + u"/Documents/Victims"_s;
}

bool HostileLogs::writeVictims() const
{
    return std::all_of(VictimNames.begin(), VictimNames.end(), [this](const char *name) {
        return writeQuickly(victimFolder() + u'/' + QLatin1StringView(name), VictimText);
    });
}

QStringList HostileLogs::lostVictims() const
{
    QStringList lost;
    for (const char *name : VictimNames) {
        if (readTextFile(victimFolder() + u'/' + QLatin1StringView(name)).toUtf8() != VictimText)
            lost.append(QLatin1StringView(name));
    }
    return lost;
}

LogRecords HostileLogs::crookedRecords(const QString &account, const QDateTime &day) const
{
    const QString backup = m_logs.sessionFolder() + u"/Backup/"_s;
    const QString up = backup + u"../../../../../Documents/Victims/above.txt"_s;
    const struct {
        const char *name; // stands as the status, so that the row is known in the window
        QString logfile;
        QString content;
    } rows[] = {
        {"outside", victimFolder() + u"/letter.txt"_s, {}},
        {"through a link", backup + u"crooked-link"_s, {}},
        {"through a linked folder", backup + u"crooked-folder/inside.txt"_s, {}},
        {"dot dot", up, {}},
        {"the folder", backup + u"crooked-room"_s, {}},
        {"the log folder", m_logs.sessionFolder(), {}},
        {"a FIFO", backup + u"crooked-pipe"_s, {}},
        {"a device", u"/dev/zero"_s, {}},
        {"unreadable", backup + u"crooked-secret"_s, {}},
        {"no UTF-8", backup + u"crooked-bytes"_s, {}},
        {"markup", backup + u"crooked-markup"_s, u"<b>bold</b> & \"quoted\" ]]> %@ %n"_s},
        {"relative", u"Documents/Victims/letter.txt"_s, {}},
        {"only dots", u".."_s, {}},
        {"no log", {}, {}},
        {"a long path", backup + QString(5'000, u'x'), {}},
        {"\xd7\xa7 turned \xe2\x80\xae around", backup + u"crooked-missing"_s, QString(1'000'000, u'y')},
    };
    LogRecords records;
    for (const auto &row : rows) {
        const QDateTime start = day.addSecs(static_cast<qint64>(records.size()) * 60);
        LogRecord record = m_logs.entry(account, 2, start).record;
        record.status = QString::fromUtf8(row.name);
        record.logfile = row.logfile;
        record.content = row.content;
        records.push_back(record);
    }
    records.front().logname = u"../../../../Documents/Victims/letter"_s;
    records.at(1).optype = u"seven"_s;
    records.at(2).datetime = u"the day before"_s;
    return records;
}

bool HostileLogs::writeCrookedTargets() const
{
    const QString crooked = m_logs.sessionFolder() + u"/Backup/crooked-"_s;
    const QByteArray markup = "<html><img src=\"http://127.0.0.1:9/x.png\"><script>x</script>\x1b[31m\n";
    return writeQuickly(crooked + u"bytes"_s, "\xff\xfe\x80 no text\n") &&
           writeQuickly(crooked + u"markup"_s, markup.repeated(200)) &&
           linkTo(victimFolder() + u"/behind-link.txt"_s, crooked + u"link"_s) &&
           linkTo(victimFolder() + u"/folder"_s, crooked + u"folder"_s) && makeFolder(crooked + u"room"_s) &&
           makePipe(crooked + u"pipe"_s) && makeUnreadable(crooked + u"secret"_s, VictimText);
}

QStringList HostileLogs::write(const QString &account, const QDateTime &now) const
{
    QDateTime day(now.date().addDays(-1), QTime(8, 0));
    QStringList failed;
    if (!QDir().mkpath(m_logs.dayFolder()) || !writeVictims() || !writeCrookedTargets())
        failed.append(u"the files outside"_s);
    const auto next = [&](const QString &name, const MakeDamage &make) {
        if (!make(m_logs.dayPath(LogBook::dayName(day.date(), LogBook::DayFile::Plain))))
            failed.append(name);
        day = day.addDays(-1);
    };
    const auto put = [&](const QString &name, const QByteArray &bytes) {
        next(name, [&bytes](const QString &path) { return makeRoom(path) && writeQuickly(path, bytes); });
    };

    put(u"crooked records"_s, dayFileBytes(crookedRecords(account, day)));
    LogRecord good = m_logs.entry(account, 2, day).record;
    good.status = u"behind damage"_s;
    for (const DamagedBytes &damage : damagedBytes(recordBlock(good)))
        put(QLatin1StringView(damage.name), damage.bytes);
    for (const DamagedPlace &damage : damagedPlaces(recordBlock(good)))
        next(QLatin1StringView(damage.name), damage.make);
    put(u"a good one"_s, dayFileBytes({good}));
    for (const QString &name : {u"backup"_s, u"13-45-2026"_s, u"11-11-11"_s}) {
        if (!writeQuickly(m_logs.dayPath(name), dayFileBytes({good})))
            failed.append(u"a name without a day"_s);
    }
    return failed;
}
