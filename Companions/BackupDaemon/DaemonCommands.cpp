#include "Companions/BackupDaemon/BackupDaemon.h"
#include "Companions/BackupDaemon/FrameCodec.h"

#include <QJsonDocument>

#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxBurst = 1'000'000;
constexpr quint64 HugePayload = quint64(1) << 40;

QByteArray toolTipFrame(const QString &text)
{
    const QJsonObject message{{u"type"_s, u"SetToolTip"_s}, {u"data"_s, QJsonObject{{u"message"_s, text}}}};
    return framed(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

/// The name itself, or what stands behind one of the ready words.
std::optional<QString> fileNameOf(const QString &word)
{
    constexpr qsizetype TenMegabytes = 10'000'000;
    if (word.isEmpty())
        return std::nullopt;
    if (word == "long"_L1)
        return u"/home/ana/"_s + u"Reports of the northern branch/"_s.repeated(12) + u"summary (final).pdf"_s;
    if (word == "rtl"_L1) // names from right to left, and one that turns its ending around
        return QStringLiteral(u"/home/ana/\u05de\u05e1\u05de\u05db\u05d9\u05dd/"
                              "\u0645\u064a\u0632\u0627\u0646\u064a\u0629 2026/photo\u202egpj.exe");
    if (word == "emoji"_L1) // joined ones among them, which only look like one character
        return QStringLiteral(u"/home/ana/Pictures/\U0001f382 Ana/\U0001f468\u200d\U0001f469\u200d\U0001f467 "
                              "\U0001f3f3\ufe0f\u200d\U0001f308.jpg");
    if (word == "10MB"_L1)
        return u"/home/ana/"_s + QString(TenMegabytes, u'x');
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
    m_commands.add(u"job"_s, u"job [ACCOUNT] [SECONDS]       run the next scheduled backup"_s,
                   [this](const QStringList &words, const QString &) { return beginFromWords(words, {}); });
    m_commands.add(u"job local"_s, u"job local [ACCOUNT] [SECONDS]    one to a disk of this machine"_s,
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, {.kind = JobKind::LocalBackup});
                   });
    m_commands.add(u"job restore"_s, u"job restore [ACCOUNT] [SECONDS]  a scheduled restore"_s,
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, {.kind = JobKind::Restore});
                   });
    m_commands.add(u"interactive"_s, u"interactive [ACCOUNT] [SECONDS]  run a backup started by hand"_s,
                   [this](const QStringList &words, const QString &) {
                       return beginFromWords(words, {.origin = BackupJob::Origin::Interactive});
                   });
    m_commands.add(u"pause"_s, u"pause                         pause the running job"_s,
                   [this](const QStringList &, const QString &) { return setJobPaused(true); });
    m_commands.add(u"resume"_s, u"resume                        go on with it"_s,
                   [this](const QStringList &, const QString &) { return setJobPaused(false); });
    m_commands.add(u"stop"_s, u"stop                          end it before its time"_s,
                   [this](const QStringList &, const QString &) { return endJob(LogStatus::Cancelled); });
    m_commands.add(u"fail"_s, u"fail                          end it with a failure"_s,
                   [this](const QStringList &, const QString &) { return endJob(LogStatus::Failure); });
    m_commands.add(u"retry"_s, u"retry [SECONDS]               report a retry; work goes on after it"_s,
                   [this](const QStringList &words, const QString &) { return retry(words); });
}

void BackupDaemon::addMessageCommands()
{
    m_commands.add(u"tooltip"_s, u"tooltip TEXT                  send a tool tip line"_s,
                   [this](const QStringList &, const QString &text) {
                       sendToolTip(text);
                       return CommandResult::ok();
                   });
    m_commands.add(u"send"_s, u"send JSON                     send any message"_s,
                   [this](const QStringList &, const QString &text) {
                       const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
                       if (!document.isObject())
                           return CommandResult::failed(u"no JSON object"_s);
                       m_server.send(document.object());
                       return CommandResult::ok();
                   });
    const auto remote = [this](const QString &type) {
        m_server.send({{u"type"_s, type}, {u"data"_s, QString()}});
        return CommandResult::ok();
    };
    m_commands.add(u"remote pause"_s, u"remote pause                  ask the monitor to pause"_s,
                   [remote](const QStringList &, const QString &) { return remote(u"SetPauseState"_s); });
    m_commands.add(u"remote resume"_s, u"remote resume                 ask it to resume"_s,
                   [remote](const QStringList &, const QString &) { return remote(u"SetResumeState"_s); });
}

void BackupDaemon::addReportCommands()
{
    m_commands.add(u"reports"_s, u"reports flat|nested|none      where progress reports carry their keys"_s,
                   [this](const QStringList &words, const QString &) { return setReportForm(words); });
    m_commands.add(u"pace"_s, u"pace COUNT                    reports a second, 4 at first"_s,
                   [this](const QStringList &words, const QString &) { return setPace(words); });
    m_commands.add(u"prepare"_s, u"prepare SECONDS               how long a job lists its files; 0: no more"_s,
                   [this](const QStringList &words, const QString &) { return setPreparation(words); });
    m_commands.add(u"file"_s, u"file NAME|long|rtl|emoji|10MB what figures call the file; no name: the set's"_s,
                   [this](const QStringList &, const QString &rest) {
                       return changeFigures([&rest](BackupJob &job) { job.setFileName(fileNameOf(rest)); });
                   });
    m_commands.add(u"ahead"_s, u"ahead SECONDS                 the job is that much further on"_s,
                   [this](const QStringList &words, const QString &) {
                       const std::chrono::seconds by(std::max(0, words.value(0).toInt()));
                       return changeFigures([by](BackupJob &job) { job.advance(by); });
                   });
    m_commands.add(u"percent"_s,
                   u"percent TEXT                  what they say as percentage; no text: the job's"_s,
                   [this](const QStringList &, const QString &rest) {
                       const auto text = rest.isEmpty() ? std::nullopt : std::optional(rest);
                       return changeFigures([&text](BackupJob &job) { job.setPercentage(text); });
                   });
    m_commands.add(u"legacy"_s, u"legacy PHASE [DESTINATION]    a report of the older form"_s,
                   [this](const QStringList &words, const QString &) { return sendOlderReport(words); });
}

void BackupDaemon::addFaultCommands()
{
    m_commands.add(
        u"garbage"_s, u"garbage                       frames that hold no JSON object"_s,
        [this](const QStringList &, const QString &) {
            for (const char *payload : {"\xff\xfe not json", "{\"type\": \"SetToolTip\", ", "[1, 2, 3]", ""})
                m_server.sendRaw(framed(payload));
            return CommandResult::ok();
        });
    m_commands.add(u"truncated"_s, u"truncated                     half a frame, then the end"_s,
                   [this](const QStringList &, const QString &) {
                       const QByteArray frame = toolTipFrame(u"This line must never be seen."_s);
                       m_server.sendRaw(frame.left(frame.size() / 2));
                       m_server.dropClients();
                       return CommandResult::ok();
                   });
    m_commands.add(u"oversized"_s, u"oversized                     a frame that announces 1 TiB"_s,
                   [this](const QStringList &, const QString &) {
                       m_server.sendRaw(frameHeader(HugePayload) + QByteArray(4096, 'x'));
                       return CommandResult::ok();
                   });
    m_commands.add(u"slow"_s, u"slow TEXT                     a tool tip, byte by byte"_s,
                   [this](const QStringList &, const QString &text) {
                       m_server.dribble(toolTipFrame(text));
                       return CommandResult::ok();
                   });
    m_commands.add(u"burst"_s, u"burst COUNT                   reports of the job as fast as they go"_s,
                   [this](const QStringList &words, const QString &) {
                       const int count = words.value(0).toInt();
                       if (!m_job || count < 1 || count > MaxBurst)
                           return CommandResult::failed(u"needs a running job and 1 to %1"_s.arg(MaxBurst));
                       sendBurst(count);
                       return CommandResult::ok();
                   });
    m_commands.add(u"drop"_s, u"drop                          close every connection"_s,
                   [this](const QStringList &, const QString &) {
                       m_server.dropClients();
                       return CommandResult::ok();
                   });
    m_commands.add(u"crash"_s, u"crash                         die and leave all files as they are"_s,
                   [](const QStringList &, const QString &) -> CommandResult {
                       printResult(CommandResult::ok());
                       ::_exit(1);
                   });
}

void BackupDaemon::addOwnCommands()
{
    m_commands.add(u"state"_s, u"state                         preparing, running, paused or none"_s,
                   [this](const QStringList &, const QString &) {
                       if (!m_job)
                           return CommandResult::ok(u"none"_s);
                       if (m_job->isPaused())
                           return CommandResult::ok(u"paused"_s);
                       return CommandResult::ok(m_job->isPreparing() ? u"preparing"_s : u"running"_s);
                   });
    m_commands.add(u"clients"_s, u"clients                       how many are connected"_s,
                   [this](const QStringList &, const QString &) {
                       return CommandResult::ok(QString::number(m_server.clientCount()));
                   });
    m_commands.add(u"help"_s, u"help                          this list"_s,
                   [this](const QStringList &, const QString &) {
                       printLine(m_commands.help());
                       return CommandResult::ok();
                   });
    m_commands.add(u"quit"_s, u"quit                          stop the job and end"_s,
                   [this](const QStringList &, const QString &) {
                       if (m_job)
                           (void)endJob(LogStatus::Cancelled);
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
            return CommandResult::failed(u"a job takes at least one second"_s);
    }
    return beginJob(order);
}

CommandResult BackupDaemon::setPreparation(const QStringList &words)
{
    const auto seconds = secondsOf(words);
    if (!seconds)
        return CommandResult::failed(u"needs a number of seconds"_s);
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
        return CommandResult::failed(u"needs a running job, and a number of seconds if any"_s);
    m_retryLeft = std::chrono::milliseconds(static_cast<int>(*seconds * 1000));
    report(ReportKind::Retrying);
    return CommandResult::ok();
}

CommandResult BackupDaemon::setPace(const QStringList &words)
{
    constexpr double Fastest = 50;
    const auto count = numberOf(words);
    if (!count || *count < 1 || *count > Fastest)
        return CommandResult::failed(u"needs 1 to %1 reports a second"_s.arg(Fastest));
    m_pace.setInterval(std::chrono::milliseconds(static_cast<int>(1000 / *count)));
    return CommandResult::ok();
}

CommandResult BackupDaemon::setReportForm(const QStringList &words)
{
    static const QStringList names{u"flat"_s, u"nested"_s, u"none"_s};
    const qsizetype form = names.indexOf(words.join(u' '));
    if (form < 0)
        return CommandResult::failed(u"flat, nested or none"_s);
    m_form = static_cast<ReportForm>(form);
    return CommandResult::ok();
}

CommandResult BackupDaemon::sendOlderReport(const QStringList &words)
{
    static const QStringList phases{u"Start"_s, u"SizeCalculated"_s, u"InProgress"_s, u"Success"_s, u"Retry"_s};
    if (!m_job || !phases.contains(words.value(0)))
        return CommandResult::failed(u"needs a running job, and one of "_s + phases.join(u", "_s));
    m_server.send(m_job->olderReport(words.first(), words.value(1)));
    return CommandResult::ok();
}

CommandResult BackupDaemon::changeFigures(const std::function<void(BackupJob &job)> &change)
{
    if (!m_job)
        return CommandResult::failed(u"no job is running"_s);
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
