#include "Source/Logger/WriteTrace.h"

#include "Platform/AtomicFile.h"
#include "Source/Logger/QNLogger.h"

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
WriteFailures &failures()
{
    // Never destroyed: threads may write until the very end of the process.
    static auto &book = *new WriteFailures([](const QString &line) { return QNLogger::logMonitorTrace(line); });
    return book;
}
} // namespace

bool traceFailure(const QString &path, const FileResult &result)
{
    if (result)
        failures().succeeded(path);
    else if (!path.isEmpty())
        failures().failed(path, result.reason());
    return bool(result);
}

bool writeOrTrace(const QString &path, const QByteArray &bytes)
{
    return traceFailure(path, AtomicFile::write(path, bytes));
}

bool writeTextOrTrace(const QString &path, const QString &text)
{
    return traceFailure(path, AtomicFile::writeText(path, text));
}

bool removeOrTrace(const QString &path)
{
    const auto result = AtomicFile::remove(path);
    return result.error() != ENOENT && traceFailure(path, result);
}

void WriteFailures::tellTheRest()
{
    for (Failure &failure : m_failures) {
        if (!failure.isTold)
            failure.isTold =
                m_tell(u"The file %1 could not be written: %2"_s.arg(failure.path, failure.reason));
    }
}

void WriteFailures::failed(const QString &path, const QString &reason)
{
    const std::lock_guard guard(m_lock);
    const bool isKnown = std::ranges::any_of(
        m_failures, [&](const Failure &known) { return known.path == path && known.reason == reason; });
    if (!isKnown) {
        if (m_failures.size() == MostKept)
            m_failures.pop_front();
        m_failures.push_back({path, reason});
    }
    tellTheRest();
}

void WriteFailures::succeeded(const QString &path)
{
    const std::lock_guard guard(m_lock);
    if (m_failures.empty())
        return;
    tellTheRest();
    std::erase_if(m_failures, [&](const Failure &known) { return known.path == path; });
}
