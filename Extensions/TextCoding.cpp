#include "Extensions/TextCoding.h"

#include <algorithm>

namespace
{
template<typename Map>
QString mappingUnits(const QString &text, Map map)
{
    QString mapped(text.size(), Qt::Uninitialized);
    std::transform(text.cbegin(), text.cend(), mapped.begin(),
                   [map](QChar unit) { return QChar(static_cast<char16_t>(map(unit.unicode()))); });
    return mapped;
}
} // namespace

QString encryptedString(const QString &text)
{
    return mappingUnits(text, [](char16_t unit) { return unit << 1; });
}

QString decryptedString(const QString &text)
{
    return mappingUnits(text, [](char16_t unit) { return unit >> 1; });
}
