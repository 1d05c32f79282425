#include "Platform/MainThread.h"

#include "Platform/DispatchQueue.h"

#include <QAbstractEventDispatcher>
#include <QPointer>

#include <unistd.h>

namespace
{
quint64 turn = 0; // main thread only

/// The dispatcher tells of its turns: at once when one begins without waiting, and before and after each wait.
void countTurnsOf(QAbstractEventDispatcher *dispatcher)
{
    static QPointer<QAbstractEventDispatcher> counted;
    if (!dispatcher || counted == dispatcher)
        return;
    counted = dispatcher;
    QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, dispatcher, [] { ++turn; });
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, dispatcher, [] { ++turn; });
}
} // namespace

bool isMainThread()
{
    thread_local const bool main = ::gettid() == ::getpid();
    return main;
}

void onMainThread(std::function<void()> work)
{
    if (isMainThread())
        work();
    else
        DispatchQueue::main().async(std::move(work));
}

bool onMainThreadAndWait(const std::function<void()> &work)
{
    bool ran = false;
    DispatchQueue::main().sync([&] {
        work();
        ran = true;
    });
    return ran;
}

quint64 mainThreadTurn()
{
    countTurnsOf(QAbstractEventDispatcher::instance());
    return turn;
}

void noteMainThreadTurn()
{
    ++turn;
}
