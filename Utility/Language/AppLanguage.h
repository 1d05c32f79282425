#pragma once

#include "Platform/UserDefaults.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// One language that the monitor speaks.
struct AppLanguage {
    QString id;
    QString localeIdentifier;
    QString englishName;

    /// English, Spanish and Japanese, in this order; the first is the fallback.
    static const std::vector<AppLanguage> &supported();
    /// The ids of supported().
    static QStringList codes();
    /// The row with exactly this id.
    static std::optional<AppLanguage> byID(const QString &id);

    /// Stores `language` as the selected one in the defaults, for this process until they are synchronised.
    /// What does not survive its JSON form (the field names as keys) is not stored.
    static void setSelected(const AppLanguage &language, UserDefaults &defaults);

    friend bool operator==(const AppLanguage &, const AppLanguage &) = default;
};

enum class SupportedLanguage { en, es, ja };

/// What the desktop says about the user's language.
namespace SystemLanguageHelper
{
/// The language that the user prefers for all programs, such as "ja" or "es-419"; "en" when nothing is known.
[[nodiscard]] QString getSystemPrimaryLanguage();
/// The same without its region: what stands before the first "-".
[[nodiscard]] QString getSystemPrimaryLanguageCode();
/// The rule behind it. A tag that begins with "-" has no language and gives "en".
[[nodiscard]] QString languageCode(const QString &tag);
} // namespace SystemLanguageHelper
