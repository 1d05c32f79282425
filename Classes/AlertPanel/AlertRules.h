#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// What an alert decides about its texts: plain functions over plain values.
namespace AlertRules
{
constexpr int CharactersPerLine = 70;
constexpr int PointsPerLine = 18;
constexpr qsizetype MaxMessageCharacters = 20'000;
constexpr qsizetype MaxTitleCharacters = 500;

/// The lines of a message beyond the first, by its characters as a reader counts them: whole seventies, and one
/// for each empty line. No text has none.
[[nodiscard]] int calculateTotalLines(const std::optional<QString> &text);

/// What a window grows by for calculateTotalLines() of its message, in points: its base size holds the first.
[[nodiscard]] int extraHeight(int totalLines);

/// The text as a window may show it: cut to `maximum` UTF-16 units with an ellipsis at the end, every line end
/// a line feed, and without control characters, among them those that turn the direction of what follows.
[[nodiscard]] QString displayText(const QString &text, qsizetype maximum);

/// The part of a message that is a link, in UTF-16 units.
struct Link {
    qsizetype start = 0;
    qsizetype length = 0;
};

/// Where `phrase` stands in a message that is exactly `sentence`; none in any other message.
[[nodiscard]] std::optional<Link> linkIn(const QString &message, const QString &sentence,
                                         const QString &phrase);

/// The help page about the permissions of a backup; `publicWebHost` is https://host[:port].
[[nodiscard]] QUrl permissionsHelpPage(const QString &publicWebHost);
} // namespace AlertRules
