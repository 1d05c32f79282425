#pragma once

#include "Platform/Bundle.h"
#include "Platform/DispatchQueue.h"
#include "Platform/StringTable.h"
#include "Platform/UserDefaults.h"
#include "Utility/Language/AppLanguage.h"

#include <QHash>
#include <QString>
#include <QStringList>

/// The language of the program and its string tables. The choice is the first element of `AppleLanguages` in
/// the user defaults; English sentences are the keys, so that a missing translation shows the English sentence.
/// Reading and looking up are safe from any thread.
class LanguageManager
{
public:
    LanguageManager(const Bundle &bundle, UserDefaults &defaults);

    /// The one of this process, over the product's shared preferences.
    static LanguageManager &shared();

    const QStringList supportedLanguages{QStringLiteral("en"), QStringLiteral("es"), QStringLiteral("ja")};
    const QString languageKey = QStringLiteral("AppleLanguages");
    const QString fallbackLanguage = QStringLiteral("en");

    [[nodiscard]] UserDefaults &userDefaults() const { return m_defaults; }

    /// The chosen language as it is stored, which may be one that the monitor does not speak; "en" for none.
    [[nodiscard]] QString currentLanguage() const;
    /// Stores a language, in lower case, and writes it for the other programs.
    void setCurrentLanguage(const QString &language);
    /// As above, but a language that the monitor does not speak changes nothing.
    void updateLanguage(const QString &language);
    /// The current language as a case, none for any that the monitor does not speak.
    [[nodiscard]] std::optional<SupportedLanguage> supportedLanguage() const;

    /// Writes what could not be written until now; false where it still can't be.
    bool save();

    /// What the preferences file holds now: one of "en", "es", "ja"; "en" for anything else.
    [[nodiscard]] QString getPersistedAppLanguage() const;
    [[nodiscard]] QString getSystemPreferredLanguage() const { return fallbackLanguage; }
    /// Makes the persisted language the current one, unless the current one is still to be written.
    void loadCurrentLanguage();
    /// Chooses the language of this process at start and stores it: the system's at a first run, the stored one
    /// where the monitor speaks it, else English.
    void setInitialAppLanguage(const QString &systemLanguageCode);

    /// The text of an English sentence in the current language, or the sentence itself.
    [[nodiscard]] QString localizedString(const QString &key) const;
    /// The text in a named language, from a named table; the key itself where that language or table has none.
    [[nodiscard]] QString localized(const QString &key, const QString &languageCode,
                                    const QString &tableName) const;

private:
    [[nodiscard]] std::optional<StringTable> table(const QString &language, const QString &name) const;
    [[nodiscard]] std::optional<QVariantMap> storedSettings() const;
    [[nodiscard]] QString persistedLanguage(const std::optional<QVariantMap> &stored) const;
    /// Sets a language that was worked out from these settings.
    void follow(const std::optional<QVariantMap> &stored, const QString &language);

    const Bundle &m_bundle;
    UserDefaults &m_defaults;
    DispatchQueue m_synchronizationQueue;
    mutable QHash<QString, std::optional<StringTable>> m_tables; // on the queue only
};

/// The rule of the first start: `stored` is the preferences file's dictionary, none where there is no such
/// file.
[[nodiscard]] QString initialLanguage(const std::optional<QVariantMap> &stored,
                                      const QString &systemLanguageCode);

/// LanguageManager::shared().localizedString().
[[nodiscard]] QString localized(const QString &key);

/// Whether `text` holds the sentence `key` in any language that the monitor speaks, and in which.
[[nodiscard]] std::optional<QString> languageOfSentence(const QString &text, const QString &key);
