#include "Companions/BackupDaemon/BackupDaemon.h"

#include "Companions/Common/Notifications.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds ReportPace{250};
const QString BandwidthChanged = u"updateBandwidthMacInUseValue"_s; ///< key of the path table

enum class CoreAction { Pause = 1, Resume = 2, Stop = 3 };
} // namespace

BackupDaemon::BackupDaemon(PathTable table, QObject *parent)
    : QObject(parent), m_table(table), m_files(table), m_logs(table)
{
    addJobCommands();
    addMessageCommands();
    addReportCommands();
    addFaultCommands();
    addOwnCommands();
    addLogCommands();
    addHistoryCommands();
    m_pace.setTimerType(Qt::PreciseTimer);
    m_pace.setInterval(ReportPace);
    connect(&m_pace, &QTimer::timeout, this, &BackupDaemon::tick);
    connect(&m_server, &DaemonServer::messageReceived, this, &BackupDaemon::takeMessage);
    connect(&m_server, &DaemonServer::noticed, this, [](const QString &line) { printLine(u"-- "_s + line); });
    hearNotifications(this, SLOT(didHear(QString)));
}

bool BackupDaemon::start(quint16 port)
{
    m_files.clearStaleState(QDateTime::currentDateTime());
    if (!m_server.listen(port)) {
        printResult(CommandResult::failed(u"cannot listen on port %1"_s.arg(port)));
        return false;
    }
    // The port is published last: whoever reads it may connect at once.
    if (!m_files.publishPort(m_server.port())) {
        printResult(CommandResult::failed(u"cannot publish the port"_s));
        return false;
    }
    printResult(CommandResult::ok(u"listening on port %1"_s.arg(m_server.port())));
    return true;
}

void BackupDaemon::runCommand(const QString &line)
{
    printResult(m_commands.run(line));
}

QString BackupDaemon::reasonAgainst(const BackupJob::Order &order) const
{
    if (m_job)
        return u"a job of %1 is running"_s.arg(m_job->account());
    if (order.account.isEmpty())
        return u"nobody is signed in, and no account is given"_s;
    if (order.origin != BackupJob::Origin::Schedule)
        return {};
    if (!m_files.scheduleFor(order.account, order.kind))
        return u"%1 has no scheduled job of that kind"_s.arg(order.account);
    return m_files.schedulesDisabled() ? u"all scheduled jobs are switched off"_s : QString();
}

CommandResult BackupDaemon::beginJob(const BackupJob::Order &order)
{
    if (const QString reason = reasonAgainst(order); !reason.isEmpty())
        return CommandResult::failed(reason);

    // A client may look at any file as soon as it hears of the job, so all of them come first.
    const bool scheduled = order.origin == BackupJob::Origin::Schedule;
    if (scheduled) {
        m_files.setScheduleStatus(order.account, JobStatus::InProgress, QDateTime::currentDateTime(),
                                  order.kind);
        m_files.setPauseMarker(order.account, false);
        m_files.setSchedulerState(SchedulerState::Normal);
    }
    constexpr int BackupOperation = 0;
    constexpr int RestoreOperation = 2;
    m_files.setCurrentJob(RunningJob{order.account, static_cast<int>(order.origin),
                                     order.kind == JobKind::Restore ? RestoreOperation : BackupOperation});
    m_job.emplace(order);
    m_job->setPreparation(m_preparation);
    m_retryLeft = {};
    m_log = m_logs.begin(order.account, m_job->operationNumber(), QDateTime::currentDateTime());
    writeLog();
    if (order.kind == JobKind::OnlineBackup)
        applyBandwidth(order.account);
    report(ReportKind::Started);
    if (scheduled)
        sendToolTip(u"Scheduled Backup is in progress."_s);
    if (!m_job->isPreparing())
        report(ReportKind::Enumerated);
    m_pace.start();
    return CommandResult::ok(u"job of %1, %2 s"_s.arg(order.account)
                                 .arg(std::chrono::duration_cast<std::chrono::seconds>(order.length).count()));
}

void BackupDaemon::writeLog()
{
    if (!m_logs.write(*m_log))
        printLine(u"-- the log cannot be written: "_s + m_log->record.logfile);
}

void BackupDaemon::applyBandwidth(const QString &account)
{
    const int percent = m_files.bandwidth(account);
    printLine(u"-- bandwidth now %1 %"_s.arg(percent));
    if (m_job && m_job->account() == account)
        m_job->setBandwidth(percent);
}

void BackupDaemon::didHear(const QString &name)
{
    if (name != m_table.value(BandwidthChanged))
        return;
    applyBandwidth(m_job ? m_job->account() : m_files.signedInAccount());
    // Its clients do not listen to this announcement: they hear it from the daemon.
    m_server.send({{u"type"_s, name}, {u"data"_s, QString()}});
}

CommandResult BackupDaemon::setJobPaused(bool paused)
{
    if (!m_job)
        return CommandResult::failed(u"no job is running"_s);
    if (m_job->isPaused() == paused)
        return CommandResult::ok(u"unchanged"_s);
    m_job->setPaused(paused);
    if (m_job->origin() == BackupJob::Origin::Schedule) {
        m_files.setPauseMarker(m_job->account(), paused);
        m_files.setSchedulerState(paused ? SchedulerState::Paused : SchedulerState::Normal);
    }
    report(paused ? ReportKind::Paused : ReportKind::Resumed);
    if (m_job->origin() == BackupJob::Origin::Schedule)
        sendToolTip(paused ? u"Your Scheduled job is paused."_s : u"Scheduled Backup is in progress."_s);
    return CommandResult::ok();
}

CommandResult BackupDaemon::endJob(const QString &result)
{
    if (!m_job)
        return CommandResult::failed(u"no job is running"_s);
    m_pace.stop();
    const QString account = m_job->account();
    const bool scheduled = m_job->origin() == BackupJob::Origin::Schedule;
    m_job->setPaused(false);
    if (scheduled) {
        m_files.setScheduleStatus(account,
                                  result == LogStatus::Cancelled ? JobStatus::Cancelled : JobStatus::Completed,
                                  QDateTime::currentDateTime());
        m_files.setPauseMarker(account, false);
        m_files.setSchedulerState(SchedulerState::Normal);
    }
    m_files.setCurrentJob(std::nullopt);
    m_log->story.files = m_job->namedFiles();
    m_log->story.count = m_job->doneFiles();
    LogBook::conclude(*m_log, result, QDateTime::currentDateTime(), m_job->elapsed());
    writeLog();
    report(ReportKind::Complete);
    m_job.reset();
    m_log.reset();
    if (scheduled)
        sendNextJobLine(account);
    printLine(result == LogStatus::Success   ? u"-- job completed"_s
              : result == LogStatus::Failure ? u"-- job failed"_s
                                             : u"-- job stopped"_s);
    return CommandResult::ok();
}

void BackupDaemon::tick()
{
    if (!m_job || m_job->isPaused())
        return;
    if (m_retryLeft.count() > 0) {
        m_retryLeft -= m_pace.intervalAsDuration();
        return;
    }
    const bool wasPreparing = m_job->isPreparing();
    m_job->advance(m_pace.intervalAsDuration());
    if (wasPreparing) {
        if (!m_job->isPreparing())
            report(ReportKind::Enumerated);
        return;
    }
    report(ReportKind::Figures);
    if (m_job->isFinished())
        (void)endJob(LogStatus::Success); // it can only fail without a job
}

void BackupDaemon::report(ReportKind kind)
{
    if (m_form == ReportForm::None)
        return;
    QJsonObject message = m_job->report(kind);
    if (m_form == ReportForm::Nested) {
        QJsonObject data = message;
        data.remove(u"type");
        message = {{u"type"_s, message.value(u"type")}, {u"data"_s, data}};
    }
    m_server.send(message);
}

void BackupDaemon::sendToolTip(const QString &message)
{
    m_server.send({{u"type"_s, u"SetToolTip"_s}, {u"data"_s, QJsonObject{{u"message"_s, message}}}});
}

void BackupDaemon::sendNextJobLine(const QString &account)
{
    // The line holds a date, which no translation table can. So the clients are asked to say it in their own
    // words, and told the English one only where they are out of reach.
    if (m_files.announceScheduleChange())
        return;
    const auto schedule = m_files.scheduleFor(account);
    sendToolTip(schedule ? u"Your next scheduled job will start on "_s +
                               schedule->value(u"scheduleTime"_s).toDateTime().toString(u"MM-dd-yyyy HH:mm")
                         : u"Your next scheduled event: You have no scheduled jobs."_s);
}

void BackupDaemon::takeMessage(const QJsonObject &message)
{
    const QString type = message.value(u"type").toString();
    printLine(u"<- "_s + type + u' ' +
              QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    const QJsonObject data = message.value(u"data").toObject();
    if (type == "clientCoreOperation"_L1) {
        takeCoreOperation(data);
    } else if (type == "SetPauseState"_L1) {
        (void)setJobPaused(true); // the core operation has come before it; this is its echo
    } else if (type == "SetResumeState"_L1) {
        (void)setJobPaused(false);
    } else if (type == "PingFromMonitor"_L1) {
        restoreRecord(data);
        joinRunningJob();
    } else if (type == "FDAMessage"_L1) {
        answerDiskAccess(data);
    } else if (type == "bandwidthThrottleChanged"_L1) {
        const QString user = data.value(u"userName").toString();
        applyBandwidth(user.isEmpty() ? m_files.signedInAccount() : user);
    } else if (type == "Shutdown"_L1) {
        const bool cancelled = data.value(u"userResponseForShutdown").toString() == "1001"_L1;
        printLine(cancelled ? u"-- shutdown cancelled"_s : u"-- shutdown granted"_s);
    } else if (type == "RemoteManage"_L1) {
        printLine(u"-- remote settings: "_s + data.value(u"ChannelType").toString());
    }
}

void BackupDaemon::takeCoreOperation(const QJsonObject &data)
{
    CommandResult result = CommandResult::failed(u"unknown action"_s);
    switch (static_cast<CoreAction>(data.value(u"actionType").toInt())) {
    case CoreAction::Pause:
        result = setJobPaused(true);
        break;
    case CoreAction::Resume:
        result = setJobPaused(false);
        break;
    case CoreAction::Stop:
        result = endJob(LogStatus::Cancelled);
        break;
    }
    if (!result.done)
        printLine(u"-- "_s + result.text);
}

void BackupDaemon::joinRunningJob()
{
    if (!m_job)
        return;
    if (m_job->origin() == BackupJob::Origin::Schedule)
        sendToolTip(m_job->isPaused() ? u"Your Scheduled job is paused."_s
                                      : u"Scheduled Backup is in progress."_s);
    // A client that joins knows nothing of the job: it builds its view from these, and only then what a pause
    // changes.
    report(m_job->isPreparing() ? ReportKind::Started : ReportKind::Figures);
    if (m_job->isPaused())
        report(ReportKind::Paused);
}

void BackupDaemon::restoreRecord(const QJsonObject &ping)
{
    // Whoever lost the connection took the job for dead, and its record out of the day file.
    if (m_log && ping.value(u"inProgress").toArray().contains(m_log->record.logfile)) {
        writeLog();
        printLine(u"-- record written again"_s);
    }
}

void BackupDaemon::answerDiskAccess(const QJsonObject &data)
{
    QJsonObject answer = data;
    answer.insert(u"IsDaemonFullDiskAccess", u"YES"_s);
    m_server.send({{u"type"_s, u"FDAMessage"_s}, {u"data"_s, answer}});
}
