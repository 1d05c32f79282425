#include "Platform/FolderNames.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>

FileResult forEachNameIn(const QString &folder, const std::function<bool(const QByteArray &name)> &take)
{
    if (!folder.startsWith(u'/') || folder.contains(QChar(u'\0')))
        return FileResult::failed(EINVAL);
    const auto close = [](DIR *open) { ::closedir(open); };
    const std::unique_ptr<DIR, decltype(close)> entries(::opendir(QFile::encodeName(folder).constData()),
                                                        close);
    if (!entries)
        return FileResult::failed(errno);
    for (;;) {
        errno = 0; // the end and a failure answer alike
        const dirent *const entry = ::readdir(entries.get());
        if (!entry)
            return errno == 0 ? FileResult() : FileResult::failed(errno);
        const bool isReal = std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0;
        if (isReal && !take(QByteArray(entry->d_name)))
            return {};
    }
}
