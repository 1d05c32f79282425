#include "Platform/SingleInstance.h"

#include "Platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds LookPeriod{10};

bool isFileAt(const QByteArray &path, int descriptor)
{
    struct stat here {
    };
    struct stat held {
    };
    return stat(path.constData(), &here) == 0 && fstat(descriptor, &held) == 0 && here.st_dev == held.st_dev &&
           here.st_ino == held.st_ino;
}
} // namespace

SingleInstance::SingleInstance(QString lockFile) : m_lockFile(std::move(lockFile))
{
}

SingleInstance::~SingleInstance()
{
    // The file stays: who removed it could take it from under one that has just opened it.
    if (m_descriptor >= 0)
        close(m_descriptor);
}

QString SingleInstance::lockFile(const QString &productFolder)
{
    return QDir::cleanPath(productFolder) + u"/.monitor-%1.lock"_s.arg(getuid());
}

SingleInstance::Answer SingleInstance::claim(std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const Answer answer = tryOnce();
        if (answer != Answer::Taken || std::chrono::steady_clock::now() >= deadline)
            return answer;
        std::this_thread::sleep_for(LookPeriod); // a lock can't be waited for with a limit
    }
}

SingleInstance::Answer SingleInstance::tryOnce()
{
    if (m_descriptor >= 0)
        return Answer::Only;
    if (!AtomicFile::makeFolders(QFileInfo(m_lockFile).path()))
        return Answer::Unguarded; // a relative path too: it would be another file in each working folder
    const QByteArray path = QFile::encodeName(m_lockFile);
    for (;;) {
        // Closed on exec, so that no program started from here keeps the claim.
        const int descriptor =
            open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
        if (descriptor < 0)
            return Answer::Unguarded;
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            const bool taken = errno == EWOULDBLOCK;
            close(descriptor);
            return taken ? Answer::Taken : Answer::Unguarded;
        }
        if (isFileAt(path, descriptor)) {
            m_descriptor = descriptor;
            return Answer::Only;
        }
        close(descriptor); // replaced since it was opened: the claim is on the file that stands there now
    }
}
