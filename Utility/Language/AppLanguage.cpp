#include "Utility/Language/AppLanguage.h"

#include "Platform/GlobalDomain.h"
#include "Utility/QNUtility.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

const std::vector<AppLanguage> &AppLanguage::supported()
{
    static const std::vector<AppLanguage> rows{
        {u"en"_s, u"en"_s, u"English"_s},
        {u"es"_s, u"es"_s, u"Spanish"_s},
        {u"ja"_s, u"ja"_s, u"Japanese"_s},
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
    const QByteArray encoded = QJsonDocument(QJsonObject{{u"id"_s, language.id},
                                                         {u"localeIdentifier"_s, language.localeIdentifier},
                                                         {u"englishName"_s, language.englishName}})
                                   .toJson(QJsonDocument::Compact);
    const QJsonObject decoded = QJsonDocument::fromJson(encoded).object();
    const AppLanguage stored{decoded["id"_L1].toString(), decoded["localeIdentifier"_L1].toString(),
                             decoded["englishName"_L1].toString()};
    if (stored == language)
        defaults.setValue(u"AppleLanguages"_s, QVariantList{stored.id});
}

QString SystemLanguageHelper::getSystemPrimaryLanguage()
{
    const QStringList languages = GlobalDomain(QNUtility::globalPreferencesPath()).languages();
    return languages.isEmpty() ? u"en"_s : languages.first();
}

QString SystemLanguageHelper::getSystemPrimaryLanguageCode()
{
    return languageCode(getSystemPrimaryLanguage());
}

QString SystemLanguageHelper::languageCode(const QString &tag)
{
    const QString code = tag.section(u'-', 0, 0);
    return code.isEmpty() ? u"en"_s : code;
}
