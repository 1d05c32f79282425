#include "Messaging/MonitorMessages.h"

#include "Extensions/TextFormat.h"
#include "Platform/Bundle.h"
#include "Platform/MessageText.h"
#include "Platform/PropertyList.h"

#include <QStringList>

#include <algorithm>
#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
/// The text of one line without its path tail, and whether an empty or unknown result stands for the whole
/// message.
struct LineText {
    QString text;
    bool isSingleId = false;
};

LineText textOfLine(const QString &line, bool isWholeT1001, const MonitorMessages::Table &table,
                    const MonitorMessages::Lookups &lookups)
{
    constexpr qsizetype MostItems = 5;
    const QStringList items = line.split(u"||"_s);
    if (items.size() >= 2 && items.size() <= MostItems) {
        const QString key = items.first() + u'-' + QString::number(items.size() - 1);
        return {formatted(lookups.localise(table.value(key)), items.mid(1))};
    }
    QString text = lookups.localise(table.value(items.first()));
    if (!isWholeT1001)
        text += u'\n';
    return {text, true};
}
} // namespace

QString MonitorMessages::getMessageForID(const QString &message, const std::optional<Table> &table,
                                         const Lookups &lookups)
{
    if (!table)
        return shownPart(message);
    const bool isWholeT1001 = message == u"T1001";
    QString result;
    const QStringList lines = shownPart(message).split(u'\n');
    for (const QString &line : lines) {
        const QStringList pieces = line.split(u"::"_s);
        const LineText made = textOfLine(pieces.first(), isWholeT1001, *table, lookups);
        result += made.text;
        if (made.isSingleId && (result == u"\n" || result == u"(null)" || result == u"(null)\n"))
            return shownPart(message);
        if (pieces.size() >= 2 && !pieces.at(1).isEmpty())
            result += u"::"_s + lookups.resolveSyncPath(pieces.at(1)).value_or(QString());
    }
    return result;
}

std::optional<MonitorMessages::Table> MonitorMessages::bundleTable()
{
    static std::mutex lock;
    static std::optional<Table> table;
    const std::lock_guard guard(lock);
    if (table)
        return table;
    const auto dictionary = PropertyList::readDictionary(Bundle::main().resource(u"MonitorMessages.plist"_s));
    if (!dictionary)
        return std::nullopt;
    table.emplace();
    for (auto entry = dictionary->cbegin(); entry != dictionary->cend(); ++entry) {
        if (entry.value().metaType() == QMetaType::fromType<QString>())
            table->insert(entry.key(), entry.value().toString());
    }
    return table;
}
