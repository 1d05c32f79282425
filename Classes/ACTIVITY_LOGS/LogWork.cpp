#include "Classes/ACTIVITY_LOGS/LogWork.h"

#include "Platform/DispatchQueue.h"
#include "Platform/WorkerThread.h"
#include "Source/Logger/QNLogger.h"

#include <QCoreApplication>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>

using namespace Qt::StringLiterals;

namespace
{
/// What is under way in this process.
struct UnderWay {
    std::mutex mutex;
    std::condition_variable changed;
    int works = 0;
    qsizetype dayFiles = 0;
    std::stop_source end;

    /// Never destroyed: threads may still work while the process ends.
    static UnderWay &shared()
    {
        static auto *const all = new UnderWay;
        return *all;
    }
};

void waitAtEnd()
{
    UnderWay &all = UnderWay::shared();
    all.end.request_stop();
    std::unique_lock lock(all.mutex);
    all.changed.wait_for(lock, LogWork::MostWait, [&] { return all.works == 0; });
    const qsizetype left = all.dayFiles;
    lock.unlock();
    if (left > 0)
        QNLogger::logMonitorTrace(
            u"Activity logs: the end came before %1 day files of a deletion were done"_s.arg(left));
}
} // namespace

LogWork::LogWork(qsizetype dayFiles) : m_dayFiles(dayFiles)
{
    [[maybe_unused]] static const bool isTiedToApplication = (qAddPostRoutine(waitAtEnd), true);
    UnderWay &all = UnderWay::shared();
    const std::lock_guard lock(all.mutex);
    ++all.works;
    all.dayFiles += dayFiles;
}

LogWork::~LogWork()
{
    UnderWay &all = UnderWay::shared();
    const std::lock_guard lock(all.mutex);
    --all.works;
    all.dayFiles -= m_dayFiles;
    all.changed.notify_all();
}

void LogWork::dayFileDone()
{
    UnderWay &all = UnderWay::shared();
    const std::lock_guard lock(all.mutex);
    --m_dayFiles;
    --all.dayFiles;
}

std::stop_token LogWork::endOfProgram()
{
    return UnderWay::shared().end.get_token();
}

struct LogWorker::State {
    const char *const name;
    std::mutex mutex;
    std::deque<std::function<void()>> waiting;
    bool isRunning = false;

    void run()
    {
        std::unique_lock lock(mutex);
        while (!waiting.empty()) {
            auto work = std::move(waiting.front());
            waiting.pop_front();
            lock.unlock();
            work();
            work = nullptr;
            lock.lock();
        }
        isRunning = false;
    }
};

LogWorker::LogWorker(const char *name) : m_state(new State{.name = name, .mutex = {}, .waiting = {}})
{
}

void LogWorker::async(std::function<void()> work) const
{
    const std::lock_guard lock(m_state->mutex);
    m_state->waiting.emplace_back([work = std::move(work), held = std::make_shared<LogWork>()] { work(); });
    if (std::exchange(m_state->isRunning, true))
        return;
    const auto run = [state = m_state] { state->run(); };
    try {
        startWorkerThread(m_state->name, run);
    } catch (const std::system_error &) {
        DispatchQueue(m_state->name).async(run);
    }
}
