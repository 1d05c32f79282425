#include "Classes/ACTIVITY_LOGS/LogListing.h"

#include "Classes/ACTIVITY_LOGS/LogFileNames.h"

#include <QSet>

#include <algorithm>

namespace
{
/// A day file's name less its extension.
QString withoutExtension(const QString &name)
{
    return name.left(name.lastIndexOf(u'.'));
}
} // namespace

std::vector<UnparsedLog> LogListing::newestFirst(const QStringList &names)
{
    std::vector<UnparsedLog> days;
    QSet<QString> seen;
    for (const QString &name : names) {
        const QString plain = LogFileNames::adjustFileNameForCDPAndSync(name);
        const auto date = LogFileNames::parseDateFromFileName(plain);
        if (date && !seen.contains(plain)) {
            seen.insert(plain);
            days.push_back({plain, *date});
        }
    }
    std::stable_sort(days.begin(), days.end(), [](const auto &a, const auto &b) { return a.date > b.date; });
    return days;
}

QStringList LogListing::everyBase(const QStringList &names)
{
    QStringList bases;
    QSet<QString> seen;
    for (const QString &name : names) {
        const QString base = withoutExtension(LogFileNames::adjustFileNameForCDPAndSync(name));
        if (!seen.contains(base)) {
            seen.insert(base);
            bases.append(base);
        }
    }
    return bases;
}

std::size_t LogListing::pageLength(int page, std::size_t unparsed, std::size_t perPage)
{
    if (page < 1)
        return 0;
    const std::size_t start = (std::size_t(page) - 1) * perPage;
    return std::min(unparsed > start ? unparsed - start : unparsed, perPage);
}

QStringList LogListing::daysOf(QDate from, QDate to)
{
    QStringList days;
    if (from.isValid() && to.isValid()) {
        for (QDate day = from; day <= to; day = day.addDays(1))
            days.append(LogFileNames::dayName(day));
    }
    return days;
}
