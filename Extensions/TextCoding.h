#pragma once

#include <QString>

/// The reversible coding of stored figures and credentials: every UTF-16 unit is doubled, the number of units
/// stays. It hides a text from a passing look and no more. Units from U+8000 on lose their top bit.
[[nodiscard]] QString encryptedString(const QString &text);

/// The inverse of encryptedString(): every UTF-16 unit is halved.
[[nodiscard]] QString decryptedString(const QString &text);
