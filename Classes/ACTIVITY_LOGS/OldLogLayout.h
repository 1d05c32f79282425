#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// What older versions have left beside today's log folders: entries of every kind in one folder, told apart by
/// the operation's word in front of their names.
namespace OldLogLayout
{
/// What a sweep has done. An entry is a file, or one that lies in a folder of the old layout.
struct Swept {
    qsizetype moved = 0;
    qsizetype left = 0; ///< the place is taken, the entry is a link, or the system refused
};

/// Brings each entry whose name begins with an operation's word into that operation's folder below `folder`;
/// an emptied old folder goes, and so does `folder` when nothing is in it. Nothing is overwritten, links are
/// neither followed nor moved, and the operations' folders stay where they are. Blocks as long as the moves
/// take, which across file systems means copying; one look into the folder where there is nothing to do.
Swept moveOldLogs(const QString &folder, const std::atomic<bool> &stop);

/// The same for one word: `names` are entries of `folder`.
Swept moveLogFiles(const QStringList &names, const QString &operation, const QString &folder,
                   const std::atomic<bool> &stop);

/// The name of the folder that takes what begins with that word.
[[nodiscard]] QString folderOfOperation(const QString &operation);

/// Whether there is an archive to show: day files of older versions, and a switch that says so. Looks at the
/// disk, at one entry of the folder at most.
[[nodiscard]] bool isOldSessionLogsFolderExist();

/// An entry of the older list of session logs.
struct SessionLog {
    QString Filepath;
    QString Description;                ///< the first word of the name
    std::optional<QDateTime> StartTime; ///< the second one; none where it is no date
    bool Type = false;
    friend bool operator==(const SessionLog &, const SessionLog &) = default;
};

/// The entries of the session log folder, by name; none where it can't be listed.
[[nodiscard]] std::vector<SessionLog> reloadSessionLogs();
/// The entry that a name in `folder` gives; none for a hidden one.
[[nodiscard]] std::optional<SessionLog> sessionLog(const QString &folder, const QString &name);
} // namespace OldLogLayout

/// Sweeps folders on a thread of its own, one after the other. Main thread only.
class OldLogSweep
{
public:
    OldLogSweep();
    /// Stops after the entry that moves just now; nobody is called any more.
    ~OldLogSweep();
    OldLogSweep(const OldLogSweep &) = delete;
    OldLogSweep &operator=(const OldLogSweep &) = delete;

    /// Sweeps `folder` as moveOldLogs() does; `done` is called on the main thread. While one for that folder
    /// waits or runs a further one joins it.
    void start(const QString &folder, std::function<void(OldLogLayout::Swept)> done = {});

private:
    struct State;
    std::shared_ptr<State> m_state;
};
