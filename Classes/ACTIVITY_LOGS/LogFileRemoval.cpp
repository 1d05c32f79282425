#include "Classes/ACTIVITY_LOGS/LogFileRemoval.h"

#include "Platform/FolderNames.h"
#include "Source/Logger/WriteTrace.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
/// In the order of removal; the empty one is the session log's own.
constexpr QLatin1StringView Endings[] = {".sync-up"_L1, ".sync-down"_L1, ".delete"_L1, ".rename"_L1,
                                         ""_L1,         ".summary"_L1,   "_info"_L1};

/// Of one folder; in a larger one each file is asked for by itself.
constexpr qsizetype MostLogsKnown = 400'000;

QStringList resolved(const QStringList &folders)
{
    QStringList paths;
    for (const QString &folder : folders) {
        const QString path = folder.startsWith(u'/') ? QFileInfo(folder).canonicalFilePath() : QString();
        if (!path.isEmpty() && path != "/"_L1)
            paths.append(path);
    }
    return paths;
}

bool isRegularFile(const QString &path)
{
    struct stat facts = {};
    return ::lstat(QFile::encodeName(path).constData(), &facts) == 0 && S_ISREG(facts.st_mode);
}

} // namespace

LogFileRemoval::LogFileRemoval(const QStringList &dumpFolders, const QStringList &folders)
    : m_dumpFolders(resolved(dumpFolders)), m_folders(resolved(folders) + m_dumpFolders)
{
}

QStringList LogFileRemoval::filesOf(const QString &logfile)
{
    QStringList files;
    for (const QLatin1StringView ending : Endings)
        files.append(logfile + ending);
    return files;
}

std::optional<QSet<QString>> LogFileRemoval::logsIn(const QString &folder)
{
    QSet<QString> logs;
    const auto listed = forEachNameIn(folder, [&](const QByteArray &bytes) {
        const QString name = QFile::decodeName(bytes);
        for (const QLatin1StringView ending : Endings) {
            if (name.endsWith(ending))
                logs.insert(name.chopped(ending.size()));
        }
        return logs.size() <= MostLogsKnown;
    });
    return listed && logs.size() <= MostLogsKnown ? std::optional(logs) : std::nullopt;
}

LogFileRemoval::Place LogFileRemoval::placeOf(const QString &folder) const
{
    Place place;
    const QString path = QFileInfo(folder).canonicalFilePath();
    const bool isOurs = std::any_of(m_folders.begin(), m_folders.end(), [&](const QString &ours) {
        return path == ours || path.startsWith(ours + u'/');
    });
    if (!isOurs)
        return place;
    place.path = path;
    place.holdsDayFiles = m_dumpFolders.contains(path);
    place.logs = logsIn(path);
    return place;
}

void LogFileRemoval::remove(const QString &logfile)
{
    const qsizetype slash = logfile.lastIndexOf(u'/');
    const QString name = logfile.sliced(slash + 1);
    const bool isName = !name.isEmpty() && name != "."_L1 && name != ".."_L1;
    if (!isName || !logfile.startsWith(u'/') || logfile.contains(QChar(u'\0')))
        return;
    const QString folder = logfile.first(slash);
    auto place = m_places.constFind(folder);
    if (place == m_places.constEnd())
        place = m_places.insert(folder, placeOf(folder));
    if (place->path.isEmpty() || (place->logs && !place->logs->contains(name)))
        return;
    for (const QString &file : filesOf(place->path + u'/' + name)) {
        const bool isDayFile = place->holdsDayFiles && file.endsWith(".xml"_L1);
        if (!isDayFile && isRegularFile(file))
            removeOrTrace(file);
    }
}
