#include "Platform/Home.h"

#include <QDir>

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
struct Account {
    QString name;
    QString home;
};

/// Calls getpwuid_r or getpwnam_r with a buffer that grows until the entry fits.
template<typename Lookup>
std::optional<Account> passwdEntry(Lookup lookup)
{
    constexpr std::size_t LargestEntry = 1U << 20;
    std::vector<char> buffer(1024);
    for (;;) {
        passwd entry{};
        passwd *found = nullptr;
        const int error = lookup(&entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE && buffer.size() < LargestEntry) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (error != 0 || !found)
            return std::nullopt;
        return Account{QString::fromLocal8Bit(found->pw_name), QFile::decodeName(found->pw_dir)};
    }
}

std::optional<Account> ownAccount()
{
    return passwdEntry([](passwd *entry, char *buffer, std::size_t size, passwd **found) {
        return getpwuid_r(getuid(), entry, buffer, size, found);
    });
}
} // namespace

QString homeDirectory()
{
    const QByteArray home = qgetenv("HOME");
    if (!home.isEmpty())
        return QFile::decodeName(home);
    const auto account = ownAccount();
    return account ? account->home : u"/"_s;
}

QString homeDirectoryForUser(const QString &loginName)
{
    if (loginName == consoleUser())
        return homeDirectory();
    const QByteArray name = loginName.toLocal8Bit();
    const auto account = passwdEntry([&](passwd *entry, char *buffer, std::size_t size, passwd **found) {
        return getpwnam_r(name.constData(), entry, buffer, size, found);
    });
    return account ? account->home : QString();
}

std::optional<QString> consoleUser()
{
    // The name of an id does not change while a process lives, and rules ask for it once a record.
    static const std::optional<QString> name = [] {
        const auto account = ownAccount();
        return account ? std::optional(account->name) : std::nullopt;
    }();
    return name;
}

QString expandingTilde(const QString &path)
{
    if (path == u'~')
        return homeDirectory();
    if (path.startsWith("~/"_L1))
        return homeDirectory() + path.sliced(1);
    return path;
}

QString standardizedPath(const QString &path)
{
    return path.isEmpty() ? path : QDir::cleanPath(expandingTilde(path));
}
