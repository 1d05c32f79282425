#include "Companions/BackupDaemon/BackupDaemon.h"
#include "Companions/BackupDaemon/FrameCodec.h"

#include <QJsonDocument>

#include <algorithm>
#include <unistd.h>

namespace
{
constexpr std::chrono::seconds DefaultJobLength{20};
constexpr int MaxBurst = 1'000'000;
constexpr quint64 HugePayload = quint64(1) << 40;

QByteArray toolTipFrame(const QString &text)
{
    const QJsonObject message{{QStringLiteral("type"), QStringLiteral("SetToolTip")},
                              {QStringLiteral("data"), QJsonObject{{QStringLiteral("message"), text}}}};
    return framed(QJsonDocument(message).toJson(QJsonDocument::Compact));
}
} // namespace

void BackupDaemon::addJobCommands()
{
    m_commands.add(QStringLiteral("job"),
                   QStringLiteral("job [ACCOUNT] [SECONDS]       run the next scheduled backup"),
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, BackupJob::Origin::Schedule);
                   });
    m_commands.add(QStringLiteral("interactive"),
                   QStringLiteral("interactive [ACCOUNT] [SECONDS]  run a backup started by hand"),
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, BackupJob::Origin::Interactive);
                   });
    m_commands.add(QStringLiteral("pause"),
                   QStringLiteral("pause                         pause the running job"),
                   [this](const QStringList &, const QString &) { return setJobPaused(true); });
    m_commands.add(QStringLiteral("resume"), QStringLiteral("resume                        go on with it"),
                   [this](const QStringList &, const QString &) { return setJobPaused(false); });
    m_commands.add(QStringLiteral("stop"),
                   QStringLiteral("stop                          end it before its time"),
                   [this](const QStringList &, const QString &) { return endJob(JobStatus::Cancelled); });
    m_commands.add(QStringLiteral("retry"), QStringLiteral("retry                         report a retry"),
                   [this](const QStringList &, const QString &) {
                       if (!m_job)
                           return CommandResult::failed(QStringLiteral("no job is running"));
                       report(ReportKind::Retrying);
                       return CommandResult::ok();
                   });
}

void BackupDaemon::addMessageCommands()
{
    m_commands.add(QStringLiteral("tooltip"),
                   QStringLiteral("tooltip TEXT                  send a tool tip line"),
                   [this](const QStringList &, const QString &text) {
                       sendToolTip(text);
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("send"), QStringLiteral("send JSON                     send any message"),
                   [this](const QStringList &, const QString &text) {
                       const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
                       if (!document.isObject())
                           return CommandResult::failed(QStringLiteral("no JSON object"));
                       m_server.send(document.object());
                       return CommandResult::ok();
                   });
    const auto remote = [this](const QString &type) {
        m_server.send({{QStringLiteral("type"), type}, {QStringLiteral("data"), QString()}});
        return CommandResult::ok();
    };
    m_commands.add(
        QStringLiteral("remote pause"),
        QStringLiteral("remote pause                  ask the monitor to pause"),
        [remote](const QStringList &, const QString &) { return remote(QStringLiteral("SetPauseState")); });
    m_commands.add(
        QStringLiteral("remote resume"), QStringLiteral("remote resume                 ask it to resume"),
        [remote](const QStringList &, const QString &) { return remote(QStringLiteral("SetResumeState")); });
    m_commands.add(QStringLiteral("reports"),
                   QStringLiteral("reports flat|nested           where progress reports carry their keys"),
                   [this](const QStringList &words, const QString &) {
                       if (words != QStringList{QStringLiteral("flat")} &&
                           words != QStringList{QStringLiteral("nested")})
                           return CommandResult::failed(QStringLiteral("flat or nested"));
                       m_nestReports = words.first() == QLatin1StringView("nested");
                       return CommandResult::ok();
                   });
}

void BackupDaemon::addFaultCommands()
{
    m_commands.add(
        QStringLiteral("garbage"),
        QStringLiteral("garbage                       frames that hold no JSON object"),
        [this](const QStringList &, const QString &) {
            for (const char *payload : {"\xff\xfe not json", "{\"type\": \"SetToolTip\", ", "[1, 2, 3]", ""})
                m_server.sendRaw(framed(payload));
            return CommandResult::ok();
        });
    m_commands.add(QStringLiteral("truncated"),
                   QStringLiteral("truncated                     half a frame, then the end"),
                   [this](const QStringList &, const QString &) {
                       const QByteArray frame = toolTipFrame(QStringLiteral("This line must never be seen."));
                       m_server.sendRaw(frame.left(frame.size() / 2));
                       m_server.dropClients();
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("oversized"),
                   QStringLiteral("oversized                     a frame that announces 1 TiB"),
                   [this](const QStringList &, const QString &) {
                       m_server.sendRaw(frameHeader(HugePayload) + QByteArray(4096, 'x'));
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("slow"),
                   QStringLiteral("slow TEXT                     a tool tip, byte by byte"),
                   [this](const QStringList &, const QString &text) {
                       m_server.dribble(toolTipFrame(text));
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("burst"),
                   QStringLiteral("burst COUNT                   reports of the job as fast as they go"),
                   [this](const QStringList &words, const QString &) {
                       const int count = words.value(0).toInt();
                       if (!m_job || count < 1 || count > MaxBurst)
                           return CommandResult::failed(
                               QStringLiteral("needs a running job and 1 to %1").arg(MaxBurst));
                       sendBurst(count);
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("drop"),
                   QStringLiteral("drop                          close every connection"),
                   [this](const QStringList &, const QString &) {
                       m_server.dropClients();
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("crash"),
                   QStringLiteral("crash                         die and leave all files as they are"),
                   [](const QStringList &, const QString &) -> CommandResult {
                       printResult(CommandResult::ok());
                       ::_exit(1);
                   });
}

void BackupDaemon::addOwnCommands()
{
    m_commands.add(QStringLiteral("clients"),
                   QStringLiteral("clients                       how many are connected"),
                   [this](const QStringList &, const QString &) {
                       return CommandResult::ok(QString::number(m_server.clientCount()));
                   });
    m_commands.add(QStringLiteral("help"), QStringLiteral("help                          this list"),
                   [this](const QStringList &, const QString &) {
                       printLine(m_commands.help());
                       return CommandResult::ok();
                   });
    m_commands.add(QStringLiteral("quit"), QStringLiteral("quit                          stop the job and end"),
                   [this](const QStringList &, const QString &) {
                       if (m_job)
                           (void)endJob(JobStatus::Cancelled);
                       Q_EMIT quitRequested();
                       return CommandResult::ok();
                   });
}

CommandResult BackupDaemon::beginFromWords(const QStringList &words, BackupJob::Origin origin)
{
    QString account = m_files.signedInAccount();
    std::chrono::seconds length = DefaultJobLength;
    for (const QString &word : words) {
        bool isNumber = false;
        const int seconds = word.toInt(&isNumber);
        if (!isNumber)
            account = word;
        else if (seconds > 0)
            length = std::chrono::seconds(seconds);
        else
            return CommandResult::failed(QStringLiteral("a job takes at least one second"));
    }
    return beginJob(account, origin, length);
}

void BackupDaemon::sendBurst(int count)
{
    const QByteArray frame =
        framed(QJsonDocument(m_job->report(ReportKind::Figures)).toJson(QJsonDocument::Compact));
    constexpr int FramesPerWrite = 1000;
    for (int left = count; left > 0; left -= FramesPerWrite)
        m_server.sendRaw(frame.repeated(std::min(left, FramesPerWrite)));
}
