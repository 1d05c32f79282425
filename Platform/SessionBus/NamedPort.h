#pragma once

#include "Platform/SessionBus/BusLink.h"

#include <QVariantList>

#include <unistd.h>

#include <functional>
#include <memory>

/// A port of this process that others call by its name: they hand over an array, and their call ends when the
/// handler has. Served on a thread of its own. All calls may come from any thread.
class NamedPort
{
public:
    /// Gets each array, on the port's thread, one after the other.
    using Handler = std::function<void(const QVariantList &message)>;

    struct Settings {
        std::chrono::milliseconds retryPace = BusLink::RetryPace; ///< while there is no bus
        uid_t user = getuid();                                    ///< whose calls are taken; others are refused
        /// Told, on the port's thread, why the name could not be had, once for each reason in a row.
        std::function<void(const QString &reason)> trace = [](const QString &) {};
    };

    /// Registers `name` and returns when callers can find it, or after OpenPatience. Where there is no bus,
    /// where it doesn't answer, and while another process has the name, the port tries again at the retry pace,
    /// and so it does after a bus was lost. Null when the name is empty or no name for the bus, or when the
    /// system refuses a thread.
    [[nodiscard]] static std::unique_ptr<NamedPort> open(const QString &name, Handler handler,
                                                         const Settings &settings);
    [[nodiscard]] static std::unique_ptr<NamedPort> open(const QString &name, Handler handler)
    {
        return open(name, std::move(handler), Settings());
    }

    static constexpr std::chrono::milliseconds OpenPatience{250};

    /// Closes the port. A handler that has begun still runs to its end; none begins any more.
    ~NamedPort();
    NamedPort(const NamedPort &) = delete;
    NamedPort &operator=(const NamedPort &) = delete;

    /// True while callers can find the port.
    [[nodiscard]] bool isReachable() const;

    /// Closes every port of this process that is open under `name`.
    static void closeAll(const QString &name);

private:
    class State;
    class Exported;
    explicit NamedPort(std::shared_ptr<State> state) : m_state(std::move(state)) {}

    const std::shared_ptr<State> m_state;
};
