#include "Utility/Language/AppLanguage.h"

#include "Platform/GlobalDomain.h"
#include "Utility/QNUtility.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

const std::vector<AppLanguage> &AppLanguage::supported()
{
    static const std::vector<AppLanguage> rows{
        {QStringLiteral("en"), QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("es"), QStringLiteral("es"), QStringLiteral("Spanish")},
        {QStringLiteral("ja"), QStringLiteral("ja"), QStringLiteral("Japanese")},
    };
    return rows;
}

QStringList AppLanguage::codes()
{
    QStringList ids;
    for (const AppLanguage &language : supported())
        ids.append(language.id);
    return ids;
}

std::optional<AppLanguage> AppLanguage::byID(const QString &id)
{
    const auto row = std::ranges::find(supported(), id, &AppLanguage::id);
    return row != supported().end() ? std::optional(*row) : std::nullopt;
}

void AppLanguage::setSelected(const AppLanguage &language, UserDefaults &defaults)
{
    const QByteArray encoded =
        QJsonDocument(QJsonObject{{QStringLiteral("id"), language.id},
                                  {QStringLiteral("localeIdentifier"), language.localeIdentifier},
                                  {QStringLiteral("englishName"), language.englishName}})
            .toJson(QJsonDocument::Compact);
    const QJsonObject decoded = QJsonDocument::fromJson(encoded).object();
    const AppLanguage stored{decoded[QLatin1String("id")].toString(),
                             decoded[QLatin1String("localeIdentifier")].toString(),
                             decoded[QLatin1String("englishName")].toString()};
    if (stored == language)
        defaults.setValue(QStringLiteral("AppleLanguages"), QVariantList{stored.id});
}

QString SystemLanguageHelper::getSystemPrimaryLanguage()
{
    const QStringList languages = GlobalDomain(QNUtility::globalPreferencesPath()).languages();
    return languages.isEmpty() ? QStringLiteral("en") : languages.first();
}

QString SystemLanguageHelper::getSystemPrimaryLanguageCode()
{
    return languageCode(getSystemPrimaryLanguage());
}

QString SystemLanguageHelper::languageCode(const QString &tag)
{
    const QString code = tag.section(u'-', 0, 0);
    return code.isEmpty() ? QStringLiteral("en") : code;
}
