#include "Companions/BackupDaemon/BackupJob.h"

#include <QTime>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{
struct SourceFile {
    const char16_t *path; ///< below the home folder of the account's owner
    const char16_t *size;
    int speed; ///< KB/s over the whole line
};

/// The files that the reports name, one after the other through the job.
constexpr std::array<SourceFile, 8> BackupSet = {{
    {u"Documents/Household/Budget 2026.ods", u"184 KB", 1'200},
    {u"Documents/Letters/Landlord & lease.odt", u"62 KB", 1'400},
    {u"Pictures/2026-08 Asturias/IMG_2041.jpg", u"5.8 MB", 4'700},
    {u"Pictures/2026-08 Asturias/IMG_2042.jpg", u"6.1 MB", 5'100},
    {u"Pictures/\u5bb6\u65cf/\u904b\u52d5\u4f1a.mov", u"214.6 MB", 8'300},
    {u"Projects/Atlas/survey.gpkg", u"48.9 MB", 7'900},
    {u"Projects/Atlas/notes.md", u"12 KB", 2'200},
    {u"Mail/Archive/2025.mbox", u"96.3 MB", 8'000},
}};
constexpr qint64 FilesInAll = 1'248; ///< the set names the larger of them
constexpr int WholeLine = 100;

/// A file below the home folder of the account's owner.
QString ownersFile(const QString &account, const char16_t *path)
{
    return u"/home/%1/"_s.arg(account.section(u'@', 0, 0)) + QString::fromUtf16(path);
}

/// What other programs of the product read in a report, by kind of job.
struct KindWords {
    int operationType;
    int detailedType;
    const char16_t *verb;
    const char16_t *olderName;
};

KindWords wordsOf(JobKind kind)
{
    switch (kind) {
    case JobKind::LocalBackup:
        return {0, 8, u"Backing up", u"SchLocalBackup"};
    case JobKind::Restore:
        return {2, 0, u"Restoring", u"SchRestore"};
    case JobKind::OnlineBackup:
        break;
    }
    return {0, 0, u"Backing up", u"SchOnlineBackup"};
}
} // namespace

QString clockText(std::chrono::milliseconds span)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span).count();
    return QString::asprintf("%02lld:%02lld:%02lld", static_cast<long long>(seconds / 3600),
                             static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
}

std::vector<LoggedFile> backupSetOf(const QString &account, qint64 count)
{
    std::vector<LoggedFile> files;
    for (qint64 place = 0; place < count; ++place) {
        const SourceFile &file = BackupSet[static_cast<std::size_t>(place) % BackupSet.size()];
        const qint64 round = place / qint64(BackupSet.size());
        const QString path = ownersFile(account, file.path);
        files.push_back({round == 0 ? path : path + u".%1"_s.arg(round), QString::fromUtf16(file.size)});
    }
    return files;
}

QString speedText(double kilobytesPerSecond)
{
    constexpr double KilobytesInMegabyte = 1000;
    return kilobytesPerSecond < KilobytesInMegabyte
               ? QString::asprintf("%.0f KB/s", kilobytesPerSecond)
               : QString::asprintf("%.1f MB/s", kilobytesPerSecond / KilobytesInMegabyte);
}

BackupJob::BackupJob(Order order) : m_order(std::move(order))
{
    m_order.length = std::max(m_order.length, std::chrono::milliseconds(1));
}

const QString &BackupJob::account() const
{
    return m_order.account;
}

BackupJob::Origin BackupJob::origin() const
{
    return m_order.origin;
}

JobKind BackupJob::kind() const
{
    return m_order.kind;
}

bool BackupJob::isPreparing() const
{
    return m_preparation.count() > 0;
}

bool BackupJob::isPaused() const
{
    return m_paused;
}

bool BackupJob::isFinished() const
{
    return m_worked >= m_order.length;
}

std::chrono::milliseconds BackupJob::elapsed() const
{
    return m_elapsed;
}

qint64 BackupJob::doneFiles() const
{
    return share(FilesInAll);
}

std::vector<LoggedFile> BackupJob::namedFiles() const
{
    return backupSetOf(m_order.account, share(BackupSet.size()));
}

int BackupJob::operationNumber() const
{
    const bool scheduled = m_order.origin == Origin::Schedule;
    switch (m_order.kind) {
    case JobKind::LocalBackup:
        return scheduled ? 14 : 13;
    case JobKind::Restore:
        return scheduled ? 11 : 3;
    case JobKind::OnlineBackup:
        break;
    }
    return scheduled ? 2 : 1;
}

void BackupJob::setPaused(bool paused)
{
    m_paused = paused;
}

void BackupJob::setPreparation(std::chrono::milliseconds left)
{
    m_preparation = left;
}

void BackupJob::setBandwidth(int percent)
{
    if (m_order.kind == JobKind::OnlineBackup)
        m_bandwidth = std::clamp(percent, 1, WholeLine);
}

void BackupJob::setFileName(std::optional<QString> name)
{
    m_fileName = std::move(name);
}

void BackupJob::setPercentage(std::optional<QString> text)
{
    m_percentage = std::move(text);
}

void BackupJob::advance(std::chrono::milliseconds by)
{
    if (m_paused)
        return;
    m_elapsed += by;
    const auto listing = std::min(by, m_preparation);
    m_preparation -= listing;
    m_worked = std::min(m_worked + (by - listing) * m_bandwidth / WholeLine, m_order.length);
}

QJsonObject BackupJob::report(ReportKind kind) const
{
    QJsonObject data;
    if (kind != ReportKind::Started)
        data.insert(u"showPercentage", true);
    if (m_paused)
        data.insert(u"pauseState", true);
    if (!isPreparing() &&
        (kind == ReportKind::Figures || kind == ReportKind::Paused || kind == ReportKind::Resumed))
        data.insert(u"progressData", figures());
    const KindWords words = wordsOf(m_order.kind);
    return {{u"type"_s, u"operationProgress"_s},
            {u"userName"_s, m_order.account},
            {u"operationStartType"_s, static_cast<int>(m_order.origin)},
            {u"progressType"_s, static_cast<int>(kind)},
            {u"operationType"_s, words.operationType},
            {u"operationDetailedType"_s, words.detailedType},
            {u"operationData"_s, data}};
}

QJsonObject BackupJob::olderReport(const QString &phase, const QString &destination) const
{
    QJsonObject data = figures();
    if (!isPreparing())
        data.insert(u"showPercentage", true);
    if (m_paused)
        data.insert(u"Pause", true);
    QJsonObject message{{u"type"_s, u"Progress"_s},
                        {u"data"_s, data},
                        {u"State"_s, phase},
                        {u"UserName"_s, m_order.account},
                        {u"operation"_s, QString::fromUtf16(wordsOf(m_order.kind).olderName)}};
    if (!destination.isEmpty())
        message.insert(u"destination", destination);
    return message;
}

qint64 BackupJob::share(qint64 whole) const
{
    return whole * m_worked.count() / m_order.length.count();
}

QJsonObject BackupJob::figures() const
{
    const qint64 place = std::min<qint64>(share(BackupSet.size()), BackupSet.size() - 1);
    const SourceFile &file = BackupSet[static_cast<std::size_t>(place)];
    QJsonObject figures{{u"percentage"_s, m_percentage.value_or(QString::number(share(100)))},
                        {u"transferSpeed"_s, speedText(double(file.speed) * m_bandwidth / WholeLine)},
                        {u"estimatedTime"_s, clockText((m_order.length - m_worked) * WholeLine / m_bandwidth)},
                        {u"elapsedtime"_s, clockText(m_elapsed)},
                        {u"filename"_s, m_fileName.value_or(ownersFile(m_order.account, file.path))},
                        {u"tansferMode"_s, QString::fromUtf16(wordsOf(m_order.kind).verb)},
                        {u"filesize"_s, QString::fromUtf16(file.size)}};
    if (m_order.kind != JobKind::LocalBackup) {
        figures.insert(u"dedupRemainingFiles", QString::number(FilesInAll - share(FilesInAll)));
        figures.insert(u"dedupCompletedFiles", QString::number(share(FilesInAll)));
    }
    return figures;
}
