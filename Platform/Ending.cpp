#include "Platform/Ending.h"

#include <atomic>
#include <cerrno>
#include <csignal>

#include <sys/eventfd.h>
#include <unistd.h>

namespace
{
// Handlers and an alarm, not a thread that waits: they work while the main thread hangs in a call, and cost
// nothing before. Whatever stands here must be allowed in a handler.
std::atomic<bool> begun = false;
std::atomic<int> told = -1;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

void onSignal(int)
{
    const int before = errno;
    Ending::begin();
    errno = before;
}

void onAlarm(int)
{
    _exit(0);
}

void handle(int number, void (*handler)(int))
{
    struct sigaction action {
    };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}
} // namespace

void Ending::listen()
{
    told = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    handle(SIGALRM, onAlarm);
    sigset_t heard;
    sigemptyset(&heard);
    sigaddset(&heard, SIGALRM);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        handle(number, onSignal);
        sigaddset(&heard, number);
    }
    pthread_sigmask(SIG_UNBLOCK, &heard, nullptr); // whoever started the program may have blocked them
}

void Ending::begin()
{
    if (begun.exchange(true))
        return;
    alarm(static_cast<unsigned>(Patience.count()));
    eventfd_write(told, 1);
}

bool Ending::hasBegun()
{
    return begun;
}

int Ending::descriptor()
{
    return told;
}
