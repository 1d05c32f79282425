#include "Classes/ACTIVITY_LOGS/LogFileNames.h"

#include "Platform/Home.h"

#include <QDir>
#include <QFile>
#include <QTime>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto ProtectionEnding = "_cdp"_L1;
constexpr auto SyncEnding = "_sync"_L1;

/// The number that `count` digits of ASCII write; -1 where anything else stands.
int digits(QStringView text, qsizetype at, int count)
{
    int number = 0;
    for (const QChar c : text.sliced(at, count)) {
        if (c < u'0' || c > u'9')
            return -1;
        number = 10 * number + (c.unicode() - u'0');
    }
    return number;
}

/// Of a text that is long enough for it.
std::optional<QDate> dayAtStart(QStringView text)
{
    if (text[2] != u'-' || text[5] != u'-')
        return std::nullopt;
    const QDate day(digits(text, 6, 4), digits(text, 0, 2), digits(text, 3, 2));
    return day.isValid() && day.year() > 0 ? std::optional(day) : std::nullopt;
}

/// A name that only begins with a dot has no extension.
QStringView withoutExtension(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.first(dot) : name;
}

/// What stands before the ending; the protection's counts where there are both.
std::optional<QStringView> beforeEnding(QStringView base)
{
    for (const QLatin1StringView ending : {ProtectionEnding, SyncEnding}) {
        if (const qsizetype at = base.indexOf(ending); at >= 0)
            return base.first(at);
    }
    return std::nullopt;
}

bool isBelow(const QString &path, const QString &folder)
{
    return path.startsWith(folder) && path.size() > folder.size() &&
           (folder.endsWith(u'/') || path[folder.size()] == u'/');
}

/// The commoner places of home folders first: to ask for this one costs more.
bool isBelowUserFolder(const QString &path)
{
    return path.contains("/home/"_L1) || path.contains("/Users/"_L1) || isBelow(path, homeDirectory());
}
} // namespace

std::optional<QDate> LogFileNames::parseDateFromFileName(const QString &name)
{
    constexpr qsizetype DayUnits = 10;
    const QStringView base = withoutExtension(name);
    const QStringView day = beforeEnding(base).value_or(base);
    return day.size() == DayUnits ? dayAtStart(day) : std::nullopt;
}

QString LogFileNames::adjustFileNameForCDPAndSync(const QString &name)
{
    const auto day = beforeEnding(withoutExtension(name));
    return day ? day->toString() + ".xml"_L1 : name;
}

std::optional<QString> LogFileNames::getLogDate(const std::optional<QString> &name)
{
    constexpr qsizetype MomentUnits = 19;
    if (!name || name->size() != MomentUnits)
        return std::nullopt;
    const QStringView text(*name);
    if (text[10] != u'-' || text[13] != u'-' || text[16] != u'-' || !dayAtStart(text))
        return std::nullopt;
    const bool isTime = QTime::isValid(digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2));
    return isTime ? name : std::nullopt;
}

QString LogFileNames::dayName(QDate day)
{
    return QString::asprintf("%02d-%02d-%04d", day.month(), day.day(), day.year());
}

QString LogFileNames::belowHome(const QString &path)
{
    return QDir::cleanPath(homeDirectory() + u'/' + path);
}

QString LogFileNames::sessionLogPath(const QString &path)
{
    if (path.isEmpty() || isBelowUserFolder(path))
        return path;
    // A relative path would mean another place in each folder that the program is started in.
    struct stat facts = {};
    const bool stands = path.startsWith(u'/') && ::stat(QFile::encodeName(path).constData(), &facts) == 0;
    return stands ? path : belowHome(path);
}
