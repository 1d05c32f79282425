#pragma once

#include <QPalette>

/// The colours of the windows with a message, light or dark. Mid is the line around a window.
[[nodiscard]] QPalette messagePalette(bool dark);
