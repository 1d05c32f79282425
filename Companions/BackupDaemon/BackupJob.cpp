#include "Companions/BackupDaemon/BackupJob.h"

#include <QTime>

#include <algorithm>
#include <array>

namespace
{
struct SourceFile {
    const char16_t *path;
    const char16_t *size;
    const char16_t *speed;
};

/// The backup set of the demo account; the job walks through it once.
constexpr std::array<SourceFile, 8> BackupSet = {{
    {u"Documents/Household/Budget 2026.ods", u"184 KB", u"1.2 MB/s"},
    {u"Documents/Letters/Landlord & lease.odt", u"62 KB", u"1.4 MB/s"},
    {u"Pictures/2026-08 Asturias/IMG_2041.jpg", u"5.8 MB", u"4.7 MB/s"},
    {u"Pictures/2026-08 Asturias/IMG_2042.jpg", u"6.1 MB", u"5.1 MB/s"},
    {u"Pictures/\u5bb6\u65cf/\u904b\u52d5\u4f1a.mov", u"214.6 MB", u"8.3 MB/s"},
    {u"Projects/Atlas/survey.gpkg", u"48.9 MB", u"7.9 MB/s"},
    {u"Projects/Atlas/notes.md", u"12 KB", u"2.2 MB/s"},
    {u"Mail/Archive/2025.mbox", u"96.3 MB", u"8.0 MB/s"},
}};

QString clockText(std::chrono::milliseconds span)
{
    return QTime(0, 0).addMSecs(static_cast<int>(span.count())).toString(u"HH:mm:ss");
}
} // namespace

BackupJob::BackupJob(QString account, Origin origin, std::chrono::milliseconds length)
    : m_account(std::move(account)), m_origin(origin), m_length(std::max(length, std::chrono::milliseconds(1)))
{
}

const QString &BackupJob::account() const
{
    return m_account;
}

BackupJob::Origin BackupJob::origin() const
{
    return m_origin;
}

bool BackupJob::isPaused() const
{
    return m_paused;
}

bool BackupJob::isFinished() const
{
    return m_elapsed >= m_length;
}

void BackupJob::setPaused(bool paused)
{
    m_paused = paused;
}

void BackupJob::advance(std::chrono::milliseconds by)
{
    if (!m_paused)
        m_elapsed = std::min(m_elapsed + by, m_length);
}

QJsonObject BackupJob::report(ReportKind kind) const
{
    QJsonObject data;
    if (kind != ReportKind::Started)
        data.insert(u"showPercentage", true);
    if (m_paused)
        data.insert(u"pauseState", true);
    if (kind == ReportKind::Figures || kind == ReportKind::Paused || kind == ReportKind::Resumed)
        data.insert(u"progressData", figures());
    return {{QStringLiteral("type"), QStringLiteral("operationProgress")},
            {QStringLiteral("userName"), m_account},
            {QStringLiteral("operationStartType"), static_cast<int>(m_origin)},
            {QStringLiteral("progressType"), static_cast<int>(kind)},
            {QStringLiteral("operationType"), 0},
            {QStringLiteral("operationDetailedType"), 0},
            {QStringLiteral("operationData"), data}};
}

QJsonObject BackupJob::figures() const
{
    const qsizetype total = static_cast<qsizetype>(BackupSet.size());
    const qsizetype done = std::min<qsizetype>(percentage() * total / 100, total - 1);
    const SourceFile &file = BackupSet[static_cast<std::size_t>(done)];
    return {{QStringLiteral("percentage"), QString::number(percentage())},
            {QStringLiteral("transferSpeed"), QString::fromUtf16(file.speed)},
            {QStringLiteral("estimatedTime"), clockText(m_length - m_elapsed)},
            {QStringLiteral("elapsedtime"), clockText(m_elapsed)},
            {QStringLiteral("filename"), QString::fromUtf16(file.path)},
            {QStringLiteral("tansferMode"), QStringLiteral("Uploading")},
            {QStringLiteral("filesize"), QString::fromUtf16(file.size)},
            {QStringLiteral("dedupRemainingFiles"), QString::number(total - done)},
            {QStringLiteral("dedupCompletedFiles"), QString::number(done)}};
}

int BackupJob::percentage() const
{
    return static_cast<int>(100 * m_elapsed.count() / m_length.count());
}
