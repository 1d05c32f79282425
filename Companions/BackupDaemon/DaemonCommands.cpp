#include "Companions/BackupDaemon/BackupDaemon.h"
#include "Companions/BackupDaemon/FrameCodec.h"

#include <QJsonDocument>

#include <algorithm>
#include <unistd.h>

namespace
{
constexpr int MaxBurst = 1'000'000;
constexpr quint64 HugePayload = quint64(1) << 40;

QByteArray toolTipFrame(const QString &text)
{
    const QJsonObject message{{QStringLiteral("type"), QStringLiteral("SetToolTip")},
                              {QStringLiteral("data"), QJsonObject{{QStringLiteral("message"), text}}}};
    return framed(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

/// The name itself, or what stands behind one of the ready words.
std::optional<QString> fileNameOf(const QString &word)
{
    constexpr qsizetype TenMegabytes = 10'000'000;
    if (word.isEmpty())
        return std::nullopt;
    if (word == QLatin1StringView("long"))
        return QStringLiteral("/home/ana/") + QStringLiteral("Reports of the northern branch/").repeated(12) +
               QStringLiteral("summary (final).pdf");
    if (word == QLatin1StringView("rtl")) // names from right to left, and one that turns its ending around
        return QStringLiteral(u"/home/ana/\u05de\u05e1\u05de\u05db\u05d9\u05dd/"
                              "\u0645\u064a\u0632\u0627\u0646\u064a\u0629 2026/photo\u202egpj.exe");
    if (word == QLatin1StringView("emoji")) // joined ones among them, which only look like one character
        return QStringLiteral(u"/home/ana/Pictures/\U0001f382 Ana/\U0001f468\u200d\U0001f469\u200d\U0001f467 "
                              "\U0001f3f3\ufe0f\u200d\U0001f308.jpg");
    if (word == QLatin1StringView("10MB"))
        return QStringLiteral("/home/ana/") + QString(TenMegabytes, u'x');
    return word;
}

std::optional<double> numberOf(const QStringList &words)
{
    bool isNumber = false;
    const double number = words.value(0).toDouble(&isNumber);
    return isNumber && words.size() == 1 ? std::optional(number) : std::nullopt;
}

std::optional<double> secondsOf(const QStringList &words)
{
    constexpr double Longest = 3600;
    const auto seconds = numberOf(words);
    return seconds && *seconds >= 0 && *seconds <= Longest ? seconds : std::nullopt;
}
} // namespace

void BackupDaemon::addJobCommands()
{
    m_commands.add(QStringLiteral("job"),
                   QStringLiteral("job [ACCOUNT] [SECONDS]       run the next scheduled backup"),
                   [this](const QStringList &words, const QString &) { return beginFromWords(words, {}); });
    m_commands.add(QStringLiteral("job local"),
                   QStringLiteral("job local [ACCOUNT] [SECONDS]    one to a disk of this machine"),
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, {.kind = JobKind::LocalBackup});
                   });
    m_commands.add(QStringLiteral("job restore"),
                   QStringLiteral("job restore [ACCOUNT] [SECONDS]  a scheduled restore"),
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, {.kind = JobKind::Restore});
                   });
    m_commands.add(QStringLiteral("interactive"),
                   QStringLiteral("interactive [ACCOUNT] [SECONDS]  run a backup started by hand"),
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, {.origin = BackupJob::Origin::Interactive});
                   });
    m_commands.add(QStringLiteral("pause"),
                   QStringLiteral("pause                         pause the running job"),
                   [this](const QStringList &, const QString &) { return setJobPaused(true); });
    m_commands.add(QStringLiteral("resume"), QStringLiteral("resume                        go on with it"),
                   [this](const QStringList &, const QString &) { return setJobPaused(false); });
    m_commands.add(QStringLiteral("stop"),
                   QStringLiteral("stop                          end it before its time"),
                   [this](const QStringList &, const QString &) { return endJob(JobStatus::Cancelled); });
    m_commands.add(QStringLiteral("retry"),
                   QStringLiteral("retry [SECONDS]               report a retry; work goes on after it"),
                   [this](const QStringList &words, const QString &) { return retry(words); });
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
}

void BackupDaemon::addReportCommands()
{
    m_commands.add(QStringLiteral("reports"),
                   QStringLiteral("reports flat|nested|none      where progress reports carry their keys"),
                   [this](const QStringList &words, const QString &) { return setReportForm(words); });
    m_commands.add(QStringLiteral("pace"),
                   QStringLiteral("pace COUNT                    reports a second, 4 at first"),
                   [this](const QStringList &words, const QString &) { return setPace(words); });
    m_commands.add(QStringLiteral("prepare"),
                   QStringLiteral("prepare SECONDS               how long a job lists its files; 0: no more"),
                   [this](const QStringList &words, const QString &) { return setPreparation(words); });
    m_commands.add(
        QStringLiteral("file"),
        QStringLiteral("file NAME|long|rtl|emoji|10MB what figures call the file; no name: the set's"),
        [this](const QStringList &, const QString &rest) {
            return changeFigures([&rest](BackupJob &job) { job.setFileName(fileNameOf(rest)); });
        });
    m_commands.add(QStringLiteral("ahead"),
                   QStringLiteral("ahead SECONDS                 the job is that much further on"),
                   [this](const QStringList &words, const QString &) {
                       const std::chrono::seconds by(std::max(0, words.value(0).toInt()));
                       return changeFigures([by](BackupJob &job) { job.advance(by); });
                   });
    m_commands.add(
        QStringLiteral("percent"),
        QStringLiteral("percent TEXT                  what they say as percentage; no text: the job's"),
        [this](const QStringList &, const QString &rest) {
            const auto text = rest.isEmpty() ? std::nullopt : std::optional(rest);
            return changeFigures([&text](BackupJob &job) { job.setPercentage(text); });
        });
    m_commands.add(QStringLiteral("legacy"),
                   QStringLiteral("legacy PHASE [DESTINATION]    a report of the older form"),
                   [this](const QStringList &words, const QString &) { return sendOlderReport(words); });
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
    m_commands.add(QStringLiteral("state"),
                   QStringLiteral("state                         preparing, running, paused or none"),
                   [this](const QStringList &, const QString &) {
                       if (!m_job)
                           return CommandResult::ok(QStringLiteral("none"));
                       if (m_job->isPaused())
                           return CommandResult::ok(QStringLiteral("paused"));
                       return CommandResult::ok(m_job->isPreparing() ? QStringLiteral("preparing")
                                                                     : QStringLiteral("running"));
                   });
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

CommandResult BackupDaemon::beginFromWords(const QStringList &words, BackupJob::Order order)
{
    order.account = m_files.signedInAccount();
    for (const QString &word : words) {
        bool isNumber = false;
        const int seconds = word.toInt(&isNumber);
        if (!isNumber)
            order.account = word;
        else if (seconds > 0)
            order.length = std::chrono::seconds(seconds);
        else
            return CommandResult::failed(QStringLiteral("a job takes at least one second"));
    }
    return beginJob(order);
}

CommandResult BackupDaemon::setPreparation(const QStringList &words)
{
    const auto seconds = secondsOf(words);
    if (!seconds)
        return CommandResult::failed(QStringLiteral("needs a number of seconds"));
    m_preparation = std::chrono::milliseconds(static_cast<int>(*seconds * 1000));
    if (m_job && m_job->isPreparing()) {
        m_job->setPreparation(m_preparation);
        if (!m_job->isPreparing())
            report(ReportKind::Enumerated);
    }
    return CommandResult::ok();
}

CommandResult BackupDaemon::retry(const QStringList &words)
{
    constexpr double Usual = 2;
    const auto seconds = words.isEmpty() ? std::optional(Usual) : secondsOf(words);
    if (!m_job || !seconds)
        return CommandResult::failed(QStringLiteral("needs a running job, and a number of seconds if any"));
    m_retryLeft = std::chrono::milliseconds(static_cast<int>(*seconds * 1000));
    report(ReportKind::Retrying);
    return CommandResult::ok();
}

CommandResult BackupDaemon::setPace(const QStringList &words)
{
    constexpr double Fastest = 50;
    const auto count = numberOf(words);
    if (!count || *count < 1 || *count > Fastest)
        return CommandResult::failed(QStringLiteral("needs 1 to %1 reports a second").arg(Fastest));
    m_pace.setInterval(std::chrono::milliseconds(static_cast<int>(1000 / *count)));
    return CommandResult::ok();
}

CommandResult BackupDaemon::setReportForm(const QStringList &words)
{
    static const QStringList names{QStringLiteral("flat"), QStringLiteral("nested"), QStringLiteral("none")};
    const qsizetype form = names.indexOf(words.join(u' '));
    if (form < 0)
        return CommandResult::failed(QStringLiteral("flat, nested or none"));
    m_form = static_cast<ReportForm>(form);
    return CommandResult::ok();
}

CommandResult BackupDaemon::sendOlderReport(const QStringList &words)
{
    static const QStringList phases{QStringLiteral("Start"), QStringLiteral("SizeCalculated"),
                                    QStringLiteral("InProgress"), QStringLiteral("Success"),
                                    QStringLiteral("Retry")};
    if (!m_job || !phases.contains(words.value(0)))
        return CommandResult::failed(QStringLiteral("needs a running job, and one of ") +
                                     phases.join(QStringLiteral(", ")));
    m_server.send(m_job->olderReport(words.first(), words.value(1)));
    return CommandResult::ok();
}

CommandResult BackupDaemon::changeFigures(const std::function<void(BackupJob &job)> &change)
{
    if (!m_job)
        return CommandResult::failed(QStringLiteral("no job is running"));
    change(*m_job);
    if (!m_job->isPreparing())
        report(ReportKind::Figures);
    return CommandResult::ok();
}

void BackupDaemon::sendBurst(int count)
{
    const QByteArray frame =
        framed(QJsonDocument(m_job->report(ReportKind::Figures)).toJson(QJsonDocument::Compact));
    constexpr int FramesPerWrite = 1000;
    for (int left = count; left > 0; left -= FramesPerWrite)
        m_server.sendRaw(frame.repeated(std::min(left, FramesPerWrite)));
}
