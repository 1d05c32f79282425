#pragma once

#include <QString>

/// Makes texts that come from outside, file names above all, fit to be shown: one line that reads from left to
/// right whatever it holds, in time that the room for it bounds and not the text.
namespace DisplayLine
{
/// The text, or its beginning and its end with an ellipsis between, `limit` UTF-16 units together. Never cuts
/// a surrogate pair.
[[nodiscard]] QString bounded(const QString &text, qsizetype limit);

/// Embeddings, overrides, isolates and single marks. Source: Unicode Standard Annex #9, section 2.
[[nodiscard]] bool turnsDirection(char16_t unit);

/// Control characters become blanks or the replacement character, and marks that would turn the direction of
/// what follows are dropped. Beside right-to-left letters the parts of a path, and what stands after two
/// blanks, are kept in their places by invisible marks.
[[nodiscard]] QString singleLine(const QString &text);

/// Several lines for where plain text is shown, such as the panel: each as singleLine() makes it, bounded, no
/// more than Limits::TipLines of them, and nothing that a tool tip would take for markup.
[[nodiscard]] QString plainTip(const QString &text);

/// As rich text that says just that text, at most ToolTipLimit units of it, and may break inside long names.
[[nodiscard]] QString toolTip(const QString &text);
inline constexpr qsizetype ToolTipLimit = 4000;
} // namespace DisplayLine
