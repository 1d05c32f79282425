#include "Utility/Language/LanguageManager.h"

#include "Platform/PropertyList.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Language/LocalizedBundle.h"
#include "Utility/QNUtility.h"

using namespace Qt::StringLiterals;

namespace
{
/// The first element of a language list, none unless it is a list that begins with a text.
std::optional<QString> firstLanguage(const QVariant &value)
{
    const QVariantList list = value.toList();
    const bool usable = !list.isEmpty() && list.first().metaType() == QMetaType::fromType<QString>();
    return usable ? std::optional(list.first().toString()) : std::nullopt;
}
} // namespace

QString initialLanguage(const std::optional<QVariantMap> &stored, const QString &systemLanguageCode)
{
    const auto supportedOrEnglish = [](const QString &language) {
        return AppLanguage::byID(language) ? language : u"en"_s;
    };
    const QVariantMap dictionary = stored.value_or(QVariantMap());
    const bool hasLanguages = dictionary.contains(u"AppleLanguages"_s);
    if (!hasLanguages && !dictionary.contains(u"logsFrom"_s))
        return supportedOrEnglish(systemLanguageCode);
    // An installation that ran before languages could be chosen spoke English.
    return supportedOrEnglish(firstLanguage(dictionary.value(u"AppleLanguages"_s)).value_or(QString()));
}

LanguageManager::LanguageManager(const Bundle &bundle, UserDefaults &defaults)
    : m_bundle(bundle), m_defaults(defaults), m_synchronizationQueue("LanguageManager.SyncQueue")
{
}

LanguageManager &LanguageManager::shared()
{
    static auto &defaults = *new UserDefaults(QNUtility::preferencesPlistPath());
    static auto &manager = *new LanguageManager(Bundle::main(), defaults);
    return manager;
}

QString LanguageManager::currentLanguage() const
{
    QString language;
    m_synchronizationQueue.sync(
        [&] { language = firstLanguage(m_defaults.value(languageKey)).value_or(fallbackLanguage); });
    return language;
}

bool LanguageManager::save()
{
    return traceFailure(m_defaults.path(), m_defaults.synchronize());
}

void LanguageManager::setCurrentLanguage(const QString &language)
{
    m_synchronizationQueue.sync([&] {
        m_defaults.setValue(languageKey, QVariantList{language.toLower()});
        save();
    });
}

void LanguageManager::follow(const std::optional<QVariantMap> &stored, const QString &language)
{
    m_synchronizationQueue.sync([&] {
        m_defaults.setValue(languageKey, QVariantList{language},
                            stored.value_or(QVariantMap()).value(languageKey));
        save();
    });
}

std::optional<QVariantMap> LanguageManager::storedSettings() const
{
    return PropertyList::readDictionary(m_defaults.path(), nullptr, Limits::SharedListBytes);
}

void LanguageManager::updateLanguage(const QString &language)
{
    if (supportedLanguages.contains(language.toLower()))
        setCurrentLanguage(language);
}

std::optional<SupportedLanguage> LanguageManager::supportedLanguage() const
{
    switch (supportedLanguages.indexOf(currentLanguage())) {
    case 0:
        return SupportedLanguage::en;
    case 1:
        return SupportedLanguage::es;
    case 2:
        return SupportedLanguage::ja;
    default:
        return std::nullopt;
    }
}

QString LanguageManager::persistedLanguage(const std::optional<QVariantMap> &stored) const
{
    const QString language =
        firstLanguage(stored.value_or(QVariantMap()).value(languageKey)).value_or(QString());
    return supportedLanguages.contains(language) ? language : fallbackLanguage;
}

QString LanguageManager::getPersistedAppLanguage() const
{
    return persistedLanguage(storedSettings());
}

void LanguageManager::loadCurrentLanguage()
{
    // The file knows nothing yet of a language that could not be written.
    if (m_defaults.isPending(languageKey))
        return;
    const auto stored = storedSettings();
    const QString persisted = persistedLanguage(stored);
    if (persisted != currentLanguage())
        follow(stored, persisted);
}

void LanguageManager::setInitialAppLanguage(const QString &systemLanguageCode)
{
    const auto stored = storedSettings();
    const QString language = initialLanguage(stored, systemLanguageCode);
    follow(stored, language);
    LocalizedBundle::main().forceLanguage(language);
}

std::optional<StringTable> LanguageManager::table(const QString &language, const QString &name) const
{
    std::optional<StringTable> found;
    m_synchronizationQueue.sync([&] {
        const QString place = language + u'/' + name;
        const auto known = m_tables.constFind(place);
        if (known == m_tables.cend()) {
            const auto folder = m_bundle.localizationFolder(language);
            found = folder ? StringTable::open(*folder, name) : std::nullopt;
            m_tables.insert(place, found);
        } else {
            found = *known;
        }
    });
    return found;
}

QString LanguageManager::localizedString(const QString &key) const
{
    const QString language = currentLanguage();
    if (language != fallbackLanguage) {
        const auto strings = table(language, u"Localizable"_s);
        const auto text = strings ? strings->text(key) : std::nullopt;
        if (text && *text != key)
            return *text;
    }
    return LocalizedBundle::main().localizedString(key);
}

QString LanguageManager::localized(const QString &key, const QString &languageCode,
                                   const QString &tableName) const
{
    const auto strings = table(languageCode, tableName);
    return strings ? strings->text(key).value_or(key) : key;
}

QString localized(const QString &key)
{
    return LanguageManager::shared().localizedString(key);
}

std::optional<QString> languageOfSentence(const QString &text, const QString &key)
{
    if (text.isEmpty() || key.isEmpty())
        return std::nullopt;
    for (const AppLanguage &language : AppLanguage::supported()) {
        if (text.contains(LanguageManager::shared().localized(key, language.id, u"Localizable"_s)))
            return language.id;
    }
    return std::nullopt;
}
