#include "Platform/StampedFile.h"

#include <QFile>

#include <algorithm>

#include <sys/stat.h>

namespace
{
std::chrono::nanoseconds sinceEpoch(const timespec &time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

bool isWholeSeconds(std::chrono::nanoseconds time)
{
    return time % std::chrono::seconds(1) == std::chrono::nanoseconds::zero();
}
} // namespace

std::optional<FileStamp> FileStamp::of(const QString &path)
{
    struct stat facts = {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return std::nullopt;
    return FileStamp{facts.st_dev, facts.st_ino, facts.st_size, sinceEpoch(facts.st_mtim),
                     sinceEpoch(facts.st_ctim)};
}

bool FileStamp::isSettled(std::chrono::nanoseconds now) const
{
    using namespace std::chrono_literals;
    // Kernels stamp by their timer tick, 1 to 10 ms; some file systems keep no fractions, or even seconds only.
    const auto coarse = isWholeSeconds(modified) && isWholeSeconds(changed);
    const std::chrono::nanoseconds tick = coarse ? 2s : 50ms;
    return std::max(modified, changed) + tick < now;
}

std::chrono::nanoseconds fileClockNow()
{
    return std::chrono::system_clock::now().time_since_epoch();
}
