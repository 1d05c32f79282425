#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QSocketNotifier;

/// Tells when a file may have changed: made, written, replaced, removed, or given other permissions. Neither
/// the file nor its folder needs to be there, and the folder may be replaced by another. Main thread only.
///
/// Where the system refuses to watch nothing is told, so the user looks at the file at times as well.
class FileWatch
{
public:
    /// `path` is absolute. `changed` is called from the event loop, once for any number of changes that have
    /// come together, and may destroy the watch.
    FileWatch(const QString &path, std::function<void()> changed);
    ~FileWatch();
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;

    /// Looks whether the folders that are watched are still those on the way to the file, and tells when they
    /// are not. The one thing that goes unseen otherwise is a change above the home directory.
    void refresh();

private:
    struct Folder {
        QByteArray path;
        QByteArray next; ///< what stands in it on the way to the file; the file itself in the innermost
        int id = -1;     ///< of the watch
    };
    enum class News { None, File, Folders };

    void arm();
    [[nodiscard]] std::vector<Folder> foldersToFile() const;
    [[nodiscard]] int add(const Folder &folder) const;
    [[nodiscard]] News readEvents();
    [[nodiscard]] News newsOf(const struct inotify_event &event) const;
    void takeEvents();

    const QByteArray m_path;
    const std::function<void()> m_changed;
    int m_fd = -1;
    std::vector<Folder> m_folders; ///< that are watched, from the innermost outwards
    std::unique_ptr<QSocketNotifier> m_notifier;
};
