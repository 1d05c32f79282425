#include "Classes/Progress/ThrottleStore.h"

#include "Platform/PropertyList.h"
#include "Platform/SharedList.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Paths/PathTable.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
QString preferencePath()
{
    return pathValue("DeamonPreferencePath"_L1, {});
}

bool isDictionary(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}
} // namespace

std::optional<QVariantMap> ThrottleStore::fetchSavedthrottleDataFromPlist()
{
    QString reason;
    const auto list = PropertyList::read(preferencePath(), &reason, Limits::SharedListBytes);
    if (!list)
        std::printf("Error reading plist: %s\n", qUtf8Printable(reason));
    return list && isDictionary(*list) ? std::optional(list->toMap()) : std::nullopt;
}

std::optional<QString> ThrottleStore::savePlistData(SettingCategory /*settingType*/, const QString &account,
                                                    const QVariantMap &entry)
{
    // Read anew, however fresh the caller's copy, and once more where the daemon writes in between.
    const auto lay = [&](QVariantMap &list) -> std::optional<QString> {
        if (!isDictionary(list.value(account)))
            return u"no settings of the account"_s;
        auto settings = list.value(account).toMap();
        settings.insert(entry);
        list.insert(account, settings);
        return std::nullopt;
    };
    const QString path = preferencePath();
    const auto result = SharedList::update(path, SharedList::Missing::Refuse, PropertyList::Format::Xml, lay);
    return traceFailure(path, result) ? std::nullopt : std::optional(result.reason());
}
