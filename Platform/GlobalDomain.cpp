#include "Platform/GlobalDomain.h"

#include "Platform/PropertyList.h"

#include <QLocale>

using namespace Qt::StringLiterals;

GlobalDomain::GlobalDomain(QString path) : m_path(std::move(path))
{
}

QStringList GlobalDomain::languages() const
{
    const auto dictionary = PropertyList::readDictionary(m_path).value_or(QVariantMap());
    const QVariantList stored = dictionary.value(u"AppleLanguages"_s).toList();
    if (!stored.isEmpty() && stored.first().metaType() == QMetaType::fromType<QString>())
        return {stored.first().toString()};
    QStringList desktop = QLocale::system().uiLanguages();
    desktop.removeAll(u"C"_s); // a session without a locale prefers no language
    return desktop;
}

std::optional<QString> GlobalDomain::interfaceStyle() const
{
    const auto dictionary = PropertyList::readDictionary(m_path).value_or(QVariantMap());
    const QVariant style = dictionary.value(u"AppleInterfaceStyle"_s);
    return style.metaType() == QMetaType::fromType<QString>() ? std::optional(style.toString()) : std::nullopt;
}
