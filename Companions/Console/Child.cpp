#include "Companions/Console/Child.h"

#include "Companions/Common/Commands.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds ReapPause{10};

QList<qint64> children()
{
    QFile list(u"/proc/self/task/%1/children"_s.arg(getpid()));
    if (!list.open(QIODevice::ReadOnly))
        return {};
    QList<qint64> pids;
    for (const QByteArray &word : list.readAll().simplified().split(' ')) {
        if (!word.isEmpty())
            pids.append(word.toLongLong());
    }
    return pids;
}
} // namespace

Child::Child(QString name, QString program, QStringList arguments, QObject *parent)
    : QObject(parent), m_name(std::move(name))
{
    m_process.setProgram(program);
    m_process.setArguments(arguments);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setChildProcessModifier([] { // the console blocks the signals that it reads
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
    });
    connect(&m_process, &QProcess::readyRead, this, &Child::readLines);
    connect(&m_process, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        m_exitCode = status == QProcess::NormalExit ? std::optional(code) : std::nullopt;
        readLines();
        Q_EMIT ended();
    });
}

Child::~Child()
{
    m_process.disconnect(this);
    end(std::chrono::seconds(2));
}

const QString &Child::name() const
{
    return m_name;
}

QString Child::program() const
{
    return m_process.program();
}

bool Child::isRunning() const
{
    return m_process.state() == QProcess::Running;
}

std::optional<int> Child::exitCode() const
{
    return m_exitCode;
}

bool Child::start()
{
    m_exitCode.reset();
    m_process.start();
    return m_process.waitForStarted();
}

void Child::writeLine(const QString &line)
{
    m_process.write(line.toUtf8() + '\n');
}

void Child::end(std::chrono::milliseconds patience)
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(static_cast<int>(patience.count()))) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void Child::readLines()
{
    while (m_process.canReadLine() || (!isRunning() && m_process.bytesAvailable() > 0)) {
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
        const QString word = line.section(u' ', 0, 0);
        if (word == "ok"_L1 || word == "error"_L1) {
            Q_EMIT answered(word == "ok"_L1, line.section(u' ', 1));
        } else {
            printLine(u"[%1] %2"_s.arg(m_name, line));
            Q_EMIT printed(line);
        }
    }
}

void adoptOrphans()
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

QList<qint64> childrenRunning(const QString &program)
{
    const QString wanted = QFileInfo(program).canonicalFilePath();
    QList<qint64> found;
    for (const qint64 pid : children()) {
        if (!wanted.isEmpty() && QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid)) == wanted)
            found.append(pid);
    }
    return found;
}

void endChildrenRunning(const QString &program, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    const QList<qint64> doomed = childrenRunning(program);
    for (const qint64 pid : doomed)
        ::kill(static_cast<pid_t>(pid), SIGTERM);
    for (const qint64 pid : doomed) {
        while (::waitpid(static_cast<pid_t>(pid), nullptr, WNOHANG) == 0) {
            if (deadline.hasExpired())
                ::kill(static_cast<pid_t>(pid), SIGKILL);
            QThread::msleep(static_cast<unsigned long>(ReapPause.count()));
        }
    }
}

QList<std::optional<int>> reapEnded(const QString &program)
{
    constexpr qsizetype KernelNameLength = 15;
    const QByteArray wanted = QFile::encodeName(QFileInfo(program).fileName()).left(KernelNameLength);
    QList<std::optional<int>> exits;
    for (const qint64 pid : children()) {
        // Of a process that has ended, the name is all that is left to know it by.
        QFile name(u"/proc/%1/comm"_s.arg(pid));
        if (!name.open(QIODevice::ReadOnly) || name.readAll().trimmed() != wanted)
            continue;
        int status = 0;
        if (::waitpid(static_cast<pid_t>(pid), &status, WNOHANG) > 0)
            exits.append(WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt);
    }
    return exits;
}
