#pragma once

#include <QString>

/// One word of a POSIX shell's input that stands for exactly this text, whatever is in it. A NUL, which no word
/// can hold, is left out.
[[nodiscard]] QString shellWord(const QString &text);
