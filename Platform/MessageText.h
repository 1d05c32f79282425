#pragma once

#include <QString>

/// The beginning of a text that came from outside, within Limits::MessageTextUnits and MessageTextLines; no
/// pair of units that makes one character is cut. Nobody reads more on a tool tip or in a window.
[[nodiscard]] QString shownPart(const QString &text);
