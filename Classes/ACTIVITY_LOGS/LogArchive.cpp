#include "Classes/ACTIVITY_LOGS/LogArchive.h"

#include "Classes/ACTIVITY_LOGS/LogTabs.h"
#include "Classes/ACTIVITY_LOGS/LogWork.h"
#include "Platform/MainThread.h"
#include "Platform/NewFile.h"
#include "Platform/ZipWriter.h"
#include "Source/Logger/WriteTrace.h"

#include <QFile>
#include <QFileInfo>

#include <map>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
class Target
{
public:
    Target(const QString &folder, const std::atomic<bool> &stop)
        : m_path(folder), m_folder(openFolder(AT_FDCWD, QFile::encodeName(folder))), m_stop(stop)
    {
    }

    void save(const LogArchive::Row &row)
    {
        const QString name = QFileInfo(row.logfile).fileName();
        const qsizetype before = m_saved.files + m_saved.failed;
        if (row.isSync)
            saveLists(row.logfile, name);
        if (const RegularFile log = RegularFile::open(row.logfile)) {
            NewFile copy(m_folder);
            FileResult result = copy.error() == 0 ? copy.fill(log, m_stop) : FileResult::failed(copy.error());
            finish(copy, name, {}, std::move(result));
        }
        if (m_saved.files + m_saved.failed == before && !m_saved.stopped)
            ++m_saved.absent;
    }
    [[nodiscard]] const LogArchive::Saved &saved() const { return m_saved; }

private:
    void saveLists(const QString &logfile, const QString &name)
    {
        std::vector<std::pair<QString, RegularFile>> lists;
        for (const LogTab tab : LogTabs::ofSync()) {
            const QString path = LogTabs::file(logfile, tab);
            if (RegularFile list = RegularFile::open(path))
                lists.emplace_back(QFileInfo(path).fileName(), std::move(list));
        }
        if (lists.empty())
            return;
        NewFile file(m_folder);
        FileResult result = file.error() == 0 ? FileResult() : FileResult::failed(file.error());
        if (result) {
            ZipWriter zip(file.descriptor());
            for (const auto &[entry, list] : lists) {
                if (result)
                    result = zip.add(entry, list, m_stop);
            }
            if (result)
                result = zip.finish();
        }
        finish(file, LogArchive::zipStem(name), u".zip"_s, std::move(result));
    }

    /// Names a file that is whole, and counts it.
    void finish(NewFile &file, const QString &stem, const QString &suffix, FileResult written)
    {
        if (written)
            file.publishFree(QFile::encodeName(stem), QFile::encodeName(suffix), written);
        if (written.error() == ECANCELED)
            m_saved.stopped = true;
        else if (traceFailure(m_path + u'/' + stem + suffix, written))
            ++m_saved.files;
        else
            ++m_saved.failed;
    }

    const QString m_path;
    const Descriptor m_folder;
    const std::atomic<bool> &m_stop;
    LogArchive::Saved m_saved;
};
} // namespace

QString LogArchive::zipStem(const QString &logName)
{
    return u"sync_"_s + QString(logName).remove("_sync"_L1);
}

bool LogArchive::isWritable(const QString &folder)
{
    const QByteArray path = QFile::encodeName(folder);
    return QFileInfo(folder).isDir() && ::faccessat(AT_FDCWD, path.constData(), W_OK | X_OK, AT_EACCESS) == 0;
}

LogArchive::Saved LogArchive::save(const std::vector<Row> &rows, const QString &folder,
                                   const std::atomic<bool> &stop)
{
    Target target(folder, stop);
    for (auto row = rows.crbegin(); row != rows.crend() && !stop; ++row)
        target.save(*row);
    Saved saved = target.saved();
    saved.stopped = saved.stopped || stop;
    return saved;
}

struct LogSaving::State {
    const LogWorker worker{"corvane-logsave"};
    quint64 started = 0;
    /// By number. Main thread only, so that what they hold is never released elsewhere.
    std::map<quint64, std::function<void(const LogArchive::Saved &)>> waiting;
};

LogSaving::LogSaving() : m_state(std::make_shared<State>()), m_stop(std::make_shared<std::atomic<bool>>(false))
{
}

LogSaving::~LogSaving()
{
    m_state->waiting.clear();
    cancel();
}

void LogSaving::start(std::vector<LogArchive::Row> rows, const QString &folder,
                      std::function<void(const LogArchive::Saved &)> done)
{
    const quint64 number = ++m_state->started;
    m_state->waiting.emplace(number, std::move(done));
    m_state->worker.async([state = m_state, stop = m_stop, rows = std::move(rows), folder, number] {
        const auto saved = LogArchive::save(rows, folder, *stop);
        onMainThread([state, saved, number] {
            if (const auto told = state->waiting.extract(number))
                told.mapped()(saved);
        });
    });
}

void LogSaving::cancel()
{
    *m_stop = true;
    m_stop = std::make_shared<std::atomic<bool>>(false);
}
