#include "Classes/Progress/ThrottleStore.h"

#include "Platform/PropertyList.h"
#include "Utility/Paths/PathTable.h"

#include <cstdio>

namespace
{
QString preferencePath()
{
    return pathValue(QLatin1String("DeamonPreferencePath"), {});
}

bool isDictionary(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}
} // namespace

std::optional<QVariantMap> ThrottleStore::fetchSavedthrottleDataFromPlist()
{
    QString reason;
    const auto list = PropertyList::read(preferencePath(), &reason);
    if (!list)
        std::printf("Error reading plist: %s\n", qUtf8Printable(reason));
    return list && isDictionary(*list) ? std::optional(list->toMap()) : std::nullopt;
}

std::optional<QString> ThrottleStore::savePlistData(SettingCategory /*settingType*/, const QString &account,
                                                    const QVariantMap &entry)
{
    // Read anew, however fresh the caller's copy: the time in which a change by the daemon is lost stays short.
    QString reason;
    auto list = PropertyList::readDictionary(preferencePath(), &reason);
    if (!list)
        return reason;
    if (!isDictionary(list->value(account)))
        return QStringLiteral("no settings of the account");
    auto settings = list->value(account).toMap();
    settings.insert(entry);
    list->insert(account, settings);
    if (!PropertyList::write(preferencePath(), *list, PropertyList::Format::Xml, &reason))
        return reason;
    return std::nullopt;
}
