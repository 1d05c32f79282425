#include "Platform/Ending.h"

#include "Platform/BusAddress.h"

#include <csignal>
#include <functional>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace
{
using Clock = std::chrono::steady_clock;

/// Runs `body` in a process of its own; gives the status and how long it took.
struct Ended {
    int status = -1;
    std::chrono::duration<double> after{};
};
Ended inChild(const std::function<int()> &body)
{
    const auto begun = Clock::now();
    const pid_t child = fork();
    if (child == 0)
        _exit(body());
    Ended ended;
    EXPECT_EQ(waitpid(child, &ended.status, 0), child);
    ended.after = Clock::now() - begun;
    return ended;
}

bool isReadable(int descriptor)
{
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, 0) == 1;
}
} // namespace

TEST(Ending, IsHeardFromEachSignalAndTold)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP, 0}) {
        const Ended ended = inChild([number] {
            sigset_t blocked; // as a careless parent leaves it
            sigfillset(&blocked);
            sigprocmask(SIG_SETMASK, &blocked, nullptr);
            Ending::listen();
            if (Ending::hasBegun() || isReadable(Ending::descriptor()))
                return 1;
            number == 0 ? Ending::begin() : static_cast<void>(raise(number));
            return Ending::hasBegun() && isReadable(Ending::descriptor()) ? 7 : 2;
        });
        EXPECT_EQ(ended.status, W_EXITCODE(7, 0)) << number;
    }
}

TEST(Ending, AProcessThatHangsIsEndedInTime)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "a process that was forked beside threads does not come to its end";
#endif
    const Ended ended = inChild([] {
        Ending::listen();
        raise(SIGTERM);
        for (;;) {
            raise(SIGTERM); // asking again doesn't begin the patience anew
            usleep(100'000);
        }
        return 3;
    });
    EXPECT_EQ(ended.status, 0);
    EXPECT_GT(ended.after.count(), 1.5);
    EXPECT_LT(ended.after.count(), 10); // two seconds, on a machine that has time
}

TEST(BusAddress, WithheldIsGoneHereAndThereForChildren)
{
    for (const char *given : {"unix:path=/given,guid=1", static_cast<const char *>(nullptr)}) {
        const Ended ended = inChild([given] {
            given ? qputenv("DBUS_SESSION_BUS_ADDRESS", given) : qunsetenv("DBUS_SESSION_BUS_ADDRESS");
            qunsetenv("XDG_RUNTIME_DIR");
            const auto before = BusAddress::current();
            BusAddress::withhold();
            QByteArray forChildren;
            for (const QByteArray &entry : BusAddress::childEnvironment()) {
                if (entry.startsWith("DBUS_SESSION_BUS_ADDRESS="))
                    forChildren += entry;
            }
            const QByteArray wanted = given ? QByteArray("DBUS_SESSION_BUS_ADDRESS=") + given : QByteArray();
            return qgetenv("DBUS_SESSION_BUS_ADDRESS") == "disabled:" && BusAddress::isWithheld() &&
                           BusAddress::current() == before && forChildren == wanted
                       ? 7
                       : 1;
        });
        EXPECT_EQ(WEXITSTATUS(ended.status), 7);
    }
}
