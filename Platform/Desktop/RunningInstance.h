#pragma once

#include "Platform/SingleInstance.h"

/// The monitor that runs already, as a second start of the program meets it.
namespace RunningInstance
{
enum class Outcome {
    Answered, ///< it came forward; this process is not needed
    Ended,    ///< it went meanwhile, and its place is this process's now
    Silent,   ///< it holds its place and gives no answer
};

/// How long a start waits for one of the three.
constexpr std::chrono::milliseconds Limit{2000};

/// Asks the owner of the bus name `identifier` to come forward, and tries to take `place` meanwhile. Blocks
/// until `deadline` at most. One that is just starting is not on the bus yet, so it is asked again.
[[nodiscard]] Outcome ask(const QString &identifier, SingleInstance &place,
                          std::chrono::steady_clock::time_point deadline);

/// Says on standard error and as a desktop notice why this start ends. Nothing is started for the notice, and
/// no answer is waited for.
struct Notice {
    QString applicationName, identifier, iconFile, text;
};
void complain(const Notice &notice);
} // namespace RunningInstance
