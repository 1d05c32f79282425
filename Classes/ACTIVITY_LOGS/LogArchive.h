#pragma once

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

/// Copies of logs in a folder that the user chose. Nothing that is there is replaced or removed: what has no
/// room under its name gets " (2)", " (3)" ... behind it.
namespace LogArchive
{
/// A record that is saved.
struct Row {
    QString logfile;
    bool isSync = false; ///< its lists go into a zip beside the copy of its log
};

struct Saved {
    qsizetype files = 0;  ///< that stand in the folder now
    qsizetype absent = 0; ///< records of which nothing could be read, so that nothing was there to be saved
    qsizetype failed = 0; ///< that could not be written, or not be read to their end
    bool stopped = false; ///< the rest was not tried
    [[nodiscard]] bool needsAlert() const { return failed > 0; }
};

/// Saves the rows, from the last to the first. Only regular files are read. Blocks as long as it takes.
[[nodiscard]] Saved save(const std::vector<Row> &rows, const QString &folder, const std::atomic<bool> &stop);

/// Whether files can be made in that folder, as its mode and its file system say.
[[nodiscard]] bool isWritable(const QString &folder);

/// The name of a sync record's zip, less the ending ".zip", by that of its log.
[[nodiscard]] QString zipStem(const QString &logName);
} // namespace LogArchive

/// Saves logs on a thread of its own. Main thread only.
class LogSaving
{
public:
    LogSaving();
    /// Stops within the next few hundred KiB; nobody is called any more.
    ~LogSaving();
    LogSaving(const LogSaving &) = delete;
    LogSaving &operator=(const LogSaving &) = delete;

    /// Saves the rows behind those before them; `done` is called on the main thread, once.
    void start(std::vector<LogArchive::Row> rows, const QString &folder,
               std::function<void(const LogArchive::Saved &)> done);
    /// Ends those that were started, with what they have saved by then.
    void cancel();

private:
    struct State;
    std::shared_ptr<State> m_state;
    std::shared_ptr<std::atomic<bool>> m_stop;
};
