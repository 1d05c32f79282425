#include "Platform/WorkerThread.h"

#include <pthread.h>
#include <signal.h>

#include <thread>

void startWorkerThread(const char *name, std::function<void()> body)
{
    // The new thread inherits the mask, so it is set around the start: a signal finds no gap.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread([name, body = std::move(body)] {
            pthread_setname_np(pthread_self(), name);
            body();
        }).detach();
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}
