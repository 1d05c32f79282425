#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

/// The rules of the progress view: plain values in, an answer out.
namespace ProgressRules
{
/// What a report tells, by its `progressType`.
enum class ProgressType {
    Started = 0,
    Figures = 1,
    EnumerationComplete = 2,
    Retrying = 3,
    Paused = 4,
    Resumed = 5,
    Complete = 6
};
/// The type behind a report's number; none for a number without a meaning or no number.
[[nodiscard]] std::optional<ProgressType> progressType(std::optional<qint64> number);

/// The two groups of figures; one of them is shown.
enum class FieldGroup {
    FileCounts, ///< pending and completed files, and both times
    BackupInfo, ///< the times alone
};
/// Some kinds of operation count no files; those have no bandwidth to control either.
[[nodiscard]] FieldGroup groupForFigures(std::optional<qint64> operationDetailedType);
/// The group before the first figures: a backup shows what the account's `dedup` word asks for, none where it
/// says neither "on" nor "off"; any other operation shows the times, one of no kind leaves what is shown.
[[nodiscard]] std::optional<FieldGroup> groupAtStart(std::optional<qint64> operationType,
                                                     const std::optional<QString> &dedup);
/// A restore cannot be paused.
[[nodiscard]] bool canBePaused(std::optional<qint64> operationType);

/// The number in decimal digits, with or without a sign; none for any other text and past 64 bits.
[[nodiscard]] std::optional<qint64> percentage(std::string_view text);

/// "42 %".
[[nodiscard]] QString percentText(int percent);

/// The line of the file in work. `verb` is looked up in the language's table; a sync has none, and its line
/// begins with a blank.
[[nodiscard]] QString fileLine(const QString &verb, const QString &name, const QString &size);

/// The longest text of a report that is kept, in UTF-8 bytes; of a longer one its beginning and end.
inline constexpr std::size_t LongestText = 4096;
[[nodiscard]] std::string shortened(std::string_view utf8);
/// Text of a report as it can be shown on one line: shortened in the middle, and made fit by DisplayLine.
[[nodiscard]] QString presentable(std::string_view utf8);

/// "account : what it does".
[[nodiscard]] QString titleLine(const QString &account, const QString &what);
} // namespace ProgressRules
