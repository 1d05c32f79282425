#include "Platform/FileWatch.h"

#include "Platform/Home.h"

#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace
{
constexpr uint32_t OfTheFile =
    IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr uint32_t OfAFolder = IN_CREATE | IN_ATTRIB | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr uint32_t OfTheWatched = IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

std::pair<QByteArray, QByteArray> split(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return {slash <= 0 ? QByteArray("/") : path.left(slash), path.mid(slash + 1)};
}
} // namespace

FileWatch::FileWatch(const QString &path, std::function<void()> changed)
    : m_path(QFile::encodeName(QDir::cleanPath(path))), m_changed(std::move(changed)),
      m_fd(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_fd < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { takeEvents(); });
    arm();
}

FileWatch::~FileWatch()
{
    // It may be the one that is calling.
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater();
    }
    if (m_fd >= 0)
        ::close(m_fd);
}

/// From the innermost outwards, up to the home directory: nobody replaces what lies above it under a session.
std::vector<FileWatch::Folder> FileWatch::foldersToFile() const
{
    const QByteArray home = QFile::encodeName(QDir::cleanPath(homeDirectory()));
    std::vector<Folder> folders;
    for (QByteArray path = m_path; path.startsWith('/') && path.size() > 1 && path != home;) {
        const auto [folder, name] = split(path);
        folders.push_back({folder, name});
        path = folder;
    }
    return folders;
}

int FileWatch::add(const Folder &folder) const
{
    const bool isInnermost = folder.path == split(m_path).first;
    return ::inotify_add_watch(m_fd, folder.path.constData(),
                               (isInnermost ? OfTheFile : OfAFolder) | OfTheWatched);
}

void FileWatch::arm()
{
    for (const Folder &folder : std::exchange(m_folders, {}))
        ::inotify_rm_watch(m_fd, folder.id);
    // From outside inwards: what is made meanwhile in a folder is seen, since its folder was watched before.
    const std::vector<Folder> folders = foldersToFile();
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        Folder watched = *folder;
        watched.id = add(watched);
        if (watched.id >= 0)
            m_folders.insert(m_folders.begin(), watched);
    }
}

void FileWatch::refresh()
{
    if (m_fd < 0)
        return;
    const std::vector<Folder> folders = foldersToFile();
    const bool same = std::ranges::all_of(folders, [this](const Folder &folder) {
        const auto watched = std::ranges::find(m_folders, folder.path, &Folder::path);
        return add(folder) == (watched == m_folders.end() ? -1 : watched->id);
    });
    if (same)
        return;
    arm();
    m_changed();
}

FileWatch::News FileWatch::newsOf(const inotify_event &event) const
{
    if (event.mask & IN_Q_OVERFLOW)
        return News::Folders;
    const auto folder = std::ranges::find(m_folders, event.wd, &Folder::id);
    if (folder == m_folders.end())
        return News::None; // of a watch that has ended
    if (event.mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT))
        return News::Folders;
    if (event.len == 0 || folder->next != event.name)
        return News::None;
    return folder == m_folders.begin() && folder->path == split(m_path).first ? News::File : News::Folders;
}

FileWatch::News FileWatch::readEvents()
{
    alignas(inotify_event) std::array<char, 16 * 1024> buffer{};
    News news = News::None;
    // Bounded: who writes faster than this reads must not hold the event loop. The notifier comes back for the
    // rest.
    for (int round = 0; round < 64; ++round) {
        const ssize_t got = ::read(m_fd, buffer.data(), buffer.size());
        if (got <= 0)
            break;
        for (ssize_t place = 0; place < got;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer.data() + place);
            news = std::max(news, newsOf(*event));
            place += ssize_t(sizeof *event) + event->len;
        }
    }
    return news;
}

void FileWatch::takeEvents()
{
    const News news = readEvents();
    if (news == News::Folders)
        arm();
    if (news == News::None)
        return;
    const auto changed = m_changed; // the watch, and this closure with it, may go in its own call
    changed();
}
