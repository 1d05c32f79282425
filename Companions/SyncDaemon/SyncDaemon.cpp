#include "Companions/SyncDaemon/SyncDaemon.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds FilePace{1000};
constexpr int DefaultFiles = 5;
constexpr int MaxFiles = 10'000;

/// Numbers of the messages between monitor and daemon.
enum Number : int {
    StatusLine = 500,
    Pause = 502,
    Resume = 503,
    Disable = 506,
    RecalculateQuota = 508,
    Enable = 510,
    ReinitializeDone = 516,
    Reinitialize = 517,
};

const QString UpToDate = u"All files are up to date"_s;
const QString Paused = u"Paused"_s;

/// One element for the eye. Of a dictionary only the keys: it may be somebody's record.
QString shown(const QVariant &value)
{
    if (value.typeId() == QMetaType::QVariantMap)
        return u'{' + QStringList(value.toMap().keys()).join(u", "_s) + u'}';
    return u'"' + value.toString() + u'"';
}
} // namespace

SyncDaemon::SyncDaemon(PathTable table, QObject *parent)
    : QObject(parent), m_files(std::move(table)), m_port(m_files.daemonPort(), m_files.monitorPort())
{
    m_work.setInterval(FilePace);
    connect(&m_work, &QTimer::timeout, this, &SyncDaemon::doNextFile);
    connect(&m_port, &SyncPort::received, this, &SyncDaemon::didReceive);
    connect(&m_port, &SyncPort::sent, this, [](const QString &failure) {
        if (!failure.isEmpty())
            printLine(u"not delivered: "_s + failure);
    });
    addSyncCommands();
    addMessageCommands();
    addFaultCommands();
    addOwnCommands();
}

bool SyncDaemon::start()
{
    const bool open = m_port.open();
    printResult(open ? CommandResult::ok(m_files.daemonPort())
                     : CommandResult::failed(u"no session bus, or the port is taken"_s));
    return open;
}

void SyncDaemon::runCommand(const QString &line)
{
    printResult(m_commands.run(line));
}

void SyncDaemon::addSyncCommands()
{
    m_commands.add(u"enable"_s, u"enable [ACCOUNT]              mark it as syncing"_s,
                   [this](const QStringList &words, const QString &) { return setEnabled(words, true); });
    m_commands.add(u"disable"_s, u"disable [ACCOUNT]             and take the mark away"_s,
                   [this](const QStringList &words, const QString &) { return setEnabled(words, false); });
    m_commands.add(u"pause"_s, u"pause                         pause, and tell the monitor"_s,
                   [this](const QStringList &, const QString &) { return setPaused(true); });
    m_commands.add(u"resume"_s, u"resume                        go on"_s,
                   [this](const QStringList &, const QString &) { return setPaused(false); });
    m_commands.add(u"work"_s, u"work [FILES]                  a line for each file, then up to date"_s,
                   [this](const QStringList &words, const QString &) {
                       const int files = words.isEmpty() ? DefaultFiles : words.first().toInt();
                       if (files < 1 || files > MaxFiles)
                           return CommandResult::failed(u"1 to %1 files"_s.arg(MaxFiles));
                       beginWork(files);
                       return CommandResult::ok();
                   });
}

void SyncDaemon::addMessageCommands()
{
    m_commands.add(u"status"_s, u"status TEXT                   send a status line"_s,
                   [this](const QStringList &, const QString &text) {
                       m_port.send(text, StatusLine);
                       return CommandResult::ok();
                   });
    m_commands.add(u"number"_s, u"number N [TEXT]               send any number"_s,
                   [this](const QStringList &words, const QString &rest) {
                       bool isNumber = false;
                       const int number = words.value(0).toInt(&isNumber);
                       if (!isNumber)
                           return CommandResult::failed(u"needs a number"_s);
                       m_port.send(rest.mid(words.first().size()).trimmed(), number);
                       return CommandResult::ok();
                   });
    m_commands.add(u"raw"_s, u"raw JSON-ARRAY                send an array as it is"_s,
                   [this](const QStringList &, const QString &text) {
                       const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
                       if (!document.isArray())
                           return CommandResult::failed(u"no JSON array"_s);
                       m_port.sendArray(document.array().toVariantList());
                       return CommandResult::ok();
                   });
}

void SyncDaemon::addFaultCommands()
{
    m_commands.add(u"hang"_s, u"hang on|off                   never answer the monitor"_s,
                   [this](const QStringList &words, const QString &) {
                       m_port.setManners({.hangs = words.value(0) == "on"_L1});
                       return CommandResult::ok();
                   });
    m_commands.add(u"late"_s, u"late SECONDS                  answer so much later"_s,
                   [this](const QStringList &words, const QString &) {
                       bool isNumber = false;
                       const double seconds = words.value(0).toDouble(&isNumber);
                       if (!isNumber || seconds < 0 || seconds > 3600)
                           return CommandResult::failed(u"0 to 3600 seconds"_s);
                       m_port.setManners(
                           {.delay = std::chrono::milliseconds(static_cast<int>(seconds * 1000))});
                       return CommandResult::ok();
                   });
    m_commands.add(u"die"_s, u"die                           end at once, as in a crash"_s,
                   [](const QStringList &, const QString &) -> CommandResult {
                       printResult(CommandResult::ok());
                       ::_exit(1);
                   });
}

void SyncDaemon::addOwnCommands()
{
    m_commands.add(u"help"_s, u"help                          this list"_s,
                   [this](const QStringList &, const QString &) {
                       printLine(m_commands.help());
                       return CommandResult::ok();
                   });
    m_commands.add(u"quit"_s, u"quit"_s, [this](const QStringList &, const QString &) {
        Q_EMIT quitRequested();
        return CommandResult::ok();
    });
}

void SyncDaemon::didReceive(const QVariantList &array)
{
    QStringList words;
    for (const QVariant &element : array)
        words.append(shown(element));
    printLine(u"received "_s + words.join(u' '));
    switch (array.value(1).toInt()) {
    case Pause:
    case Disable:
        m_work.stop();
        break;
    case Enable:
    case Resume:
        beginWork(DefaultFiles);
        break;
    case RecalculateQuota:
        m_port.send({}, RecalculateQuota);
        break;
    case Reinitialize:
        beginWork(DefaultFiles);
        m_isReinitializing = true;
        break;
    default:
        break;
    }
}

void SyncDaemon::beginWork(int files)
{
    m_filesDone = 0;
    m_filesInAll = files;
    m_isReinitializing = false;
    m_work.start();
}

void SyncDaemon::doNextFile()
{
    if (m_filesDone < m_filesInAll) {
        ++m_filesDone;
        m_port.send(u"Uploading document-%1.pdf (%1 of %2)"_s.arg(m_filesDone).arg(m_filesInAll), StatusLine);
        return;
    }
    m_work.stop();
    if (m_isReinitializing) {
        m_files.setReinitializing(false);
        m_port.send({}, ReinitializeDone);
    }
    m_port.send(UpToDate, StatusLine);
}

CommandResult SyncDaemon::setEnabled(const QStringList &words, bool enabled)
{
    const QString account = words.value(0, m_files.signedInAccount());
    if (account.isEmpty() || account.contains(u'/') ||
        account.startsWith(u'.')) // it becomes the name of a folder
        return CommandResult::failed(u"nobody is signed in, and no account is given"_s);
    if (!m_files.setEnabled(account, enabled))
        return CommandResult::failed(u"the files could not be written"_s);
    if (!enabled)
        m_work.stop();
    return CommandResult::ok();
}

CommandResult SyncDaemon::setPaused(bool paused)
{
    const QString account = m_files.signedInAccount();
    if (account.isEmpty())
        return CommandResult::failed(u"nobody is signed in"_s);
    if (!m_files.setPaused(account, paused))
        return CommandResult::failed(u"the files could not be written"_s);
    m_port.send({}, Resume); // the number that says that the pause has changed, either way
    if (paused) {
        m_work.stop();
        m_port.send(Paused, StatusLine);
    } else {
        beginWork(DefaultFiles);
    }
    return CommandResult::ok();
}
