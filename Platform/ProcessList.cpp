#include "Platform/ProcessList.h"

#include <QFile>

#include <array>
#include <cctype>
#include <climits>
#include <memory>
#include <string>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

QStringList runningExecutables()
{
    QStringList names;
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(opendir("/proc"), closedir);
    while (const dirent *entry = folder ? readdir(folder.get()) : nullptr) {
        if (!std::isdigit(static_cast<unsigned char>(entry->d_name[0])))
            continue;
        struct stat facts {
        };
        if (fstatat(dirfd(folder.get()), entry->d_name, &facts, 0) != 0 || facts.st_uid != getuid())
            continue;
        std::array<char, PATH_MAX> target{};
        const std::string link = std::string(entry->d_name) + "/exe";
        const ssize_t length = readlinkat(dirfd(folder.get()), link.c_str(), target.data(), target.size());
        if (length <= 0)
            continue;
        QString path = QFile::decodeName(QByteArray(target.data(), length));
        // An update replaces the file of a running program, which then reads like this.
        if (path.endsWith(" (deleted)"_L1))
            path.chop(10);
        names.append(path.section(u'/', -1));
    }
    return names;
}
