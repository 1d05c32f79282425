#include "Platform/StringTable.h"

using namespace Qt::StringLiterals;

std::optional<StringTable> StringTable::open(const QString &folder, const QString &table)
{
    StringTable opened;
    opened.m_messages = std::make_shared<QTranslator>();
    if (!opened.m_messages->load(folder + u'/' + table + u".qm"_s))
        return std::nullopt;
    return opened;
}

std::optional<QString> StringTable::text(const QString &key) const
{
    const QString found = m_messages->translate(Context, key.toUtf8().constData());
    return found.isEmpty() ? std::nullopt : std::optional(found);
}
