#include "Platform/Desktop/PlainTextOpener.h"

#include "Platform/AtomicFile.h"
#include "Platform/BusAddress.h"
#include "Platform/Desktop/Applications.h"
#include "Platform/DesktopEntry.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 LongestAnswer = 4096; // one line with a name

constexpr int KilledWithin = 1000; // milliseconds; a process that was killed is gone long before

bool start(const QStringList &words)
{
    const QString program = words.isEmpty() ? QString() : QStandardPaths::findExecutable(words.first());
    return !program.isEmpty() && Applications::open(program, words.mid(1));
}

/// The file of an id; each hyphen in it may stand for a folder.
QString entryFile(QString id)
{
    QString file = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, id);
    for (qsizetype hyphen = id.indexOf(u'-'); file.isEmpty() && hyphen > 0; hyphen = id.indexOf(u'-', hyphen)) {
        id[hyphen] = u'/';
        file = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, id);
    }
    return file;
}

QStringList childEnvironment()
{
    QStringList entries;
    for (const QByteArray &entry : BusAddress::childEnvironment())
        entries.append(QString::fromLocal8Bit(entry));
    return entries;
}
} // namespace

QStringList wordsToOpen(const QString &desktopFileId, const QString &path)
{
    const bool isId = desktopFileId.endsWith(".desktop"_L1) && !desktopFileId.contains(u'/') &&
                      !desktopFileId.startsWith(u'.');
    const QString file = isId ? entryFile(desktopFileId) : QString();
    const auto bytes = file.isEmpty() ? std::nullopt : AtomicFile::read(file, Limits::DesktopEntryBytes);
    const auto keys = bytes ? DesktopEntry::parse(*bytes) : std::nullopt;
    if (!keys || keys->value(u"Terminal"_s) == "true"_L1)
        return {};
    const auto words = DesktopEntry::wordsOfExec(keys->value(u"Exec"_s));
    return words ? *words + QStringList{path} : QStringList();
}

/// One file on its way. It deletes itself when the program was started, or could not be.
class PlainTextOpener::Query : public QProcess
{
public:
    Query(PlainTextOpener &opener, const QString &path, std::function<void(bool)> done)
        : QProcess(&opener.m_queries), m_path(path), m_done(std::move(done)),
          m_patience(opener.m_clock.start(Patience, Clock::Repeat::Once, [this] { end({}); }))
    {
        connect(this, &QProcess::errorOccurred, this, [this] { end({}); });
        connect(this, &QProcess::finished, this,
                [this] { end(QString::fromUtf8(read(LongestAnswer)).trimmed()); });
        setEnvironment(childEnvironment());
        setStandardInputFile(nullDevice());
        setStandardErrorFile(nullDevice());
        QProcess::start(u"xdg-mime"_s, {u"query"_s, u"default"_s, u"text/plain"_s}, ReadOnly);
    }
    ~Query() override
    {
        disconnect(this, nullptr, this, nullptr);
        kill();
        waitForFinished(KilledWithin);
    }

private:
    void end(const QString &desktopFileId)
    {
        if (std::exchange(m_isEnded, true))
            return;
        deleteLater(); // its own signal is on the way
        const auto done = std::move(m_done);
        // The file may have given way to something that must not be opened.
        const bool isStarted = QFileInfo(m_path).isFile() && (::start(wordsToOpen(desktopFileId, m_path)) ||
                                                              ::start({u"xdg-open"_s, m_path}));
        if (done)
            done(isStarted);
    }

    const QString m_path;
    std::function<void(bool)> m_done;
    std::unique_ptr<Clock::Timer> m_patience;
    bool m_isEnded = false;
};

PlainTextOpener::PlainTextOpener(Clock &clock) : m_clock(clock)
{
}

PlainTextOpener::~PlainTextOpener() = default;

void PlainTextOpener::open(const QString &path, std::function<void(bool)> done)
{
    const bool isTaken =
        path.startsWith(u'/') && QFileInfo(path).isFile() && m_queries.children().size() < MostWaiting;
    if (isTaken)
        new Query(*this, path, std::move(done)); // owned by m_queries
    else if (done)
        done(false);
}
