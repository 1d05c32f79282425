#pragma once

#include <QString>
#include <QStringView>

/// How a job ended, as far as the list tells it by more than the word.
enum class LogState { Success, Failure, Warning, Progress, Neutral };
inline constexpr int LogStates = 5;

/// What stands for a state beside its word. Each image has an outline of its own.
struct LogStatusLook {
    LogState state = LogState::Neutral;
    const char16_t *image = nullptr;  ///< name of an image of the bundle, without its ending
    const char16_t *colour = nullptr; ///< name of a colour of WindowLook
};

/// The look of a record's status word. A word that nobody knows is neutral.
[[nodiscard]] const LogStatusLook &logStatusLook(QStringView status);

[[nodiscard]] const LogStatusLook &logStateLook(LogState state);

/// Whether the record's job still runs.
[[nodiscard]] bool isInProgress(QStringView status);

/// Name of the image of an operation, by a record's `optype`; one for all that have none.
[[nodiscard]] QString logOperationImage(int optype);
