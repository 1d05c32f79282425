// The commands that read and work the list of activity logs, and choose from the boxes beside it.

#include "Companions/Console/Console.h"
#include "Companions/Console/LogTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MostRowsRead = 500; ///< more take longer than a tale should

CommandResult noTable()
{
    return CommandResult::failed(u"there is no list of logs"_s);
}

/// The list, as far as it is worth reading, where something else was expected.
QString textOf(const LogTable &table)
{
    constexpr int Most = 20;
    const int rows = table.rows();
    QString text = u"the list has %1 rows"_s.arg(rows);
    for (int number = 1; number <= std::min(rows, Most); ++number)
        text += u'\n' + table.row(number).value_or(QString());
    return text;
}
} // namespace

std::optional<RowWanted> rowWantedOf(const QString &words)
{
    bool isNumber = false;
    const int number = words.section(u' ', 0, 0).toInt(&isNumber);
    if (!isNumber || number < 0)
        return std::nullopt;
    const QString rest = words.section(u' ', 1).trimmed();
    return RowWanted{number, wantedOf(rest)};
}

void Console::addLogCommands()
{
    addCommand(u"select"_s,
               u"select log ROW...             makes these rows of the list of logs the selection"_s,
               [this](const QStringList &words, const QString &) { selectLogs(words); });
    addCommand(u"choose"_s, u"choose ENTRY                  in a box of the monitor's windows"_s,
               [this](const QStringList &, const QString &rest) { chooseEntry(wantedOf(rest).text); });
}

void Console::expectLogs(const QString &text)
{
    const auto wanted = rowWantedOf(text);
    if (!wanted || !wanted->wanted.text.isEmpty())
        return finish(CommandResult::failed(u"needs a number of logs"_s));
    watchTable(wanted->wanted.limit, [number = wanted->number](const LogTable &table) {
        return table.rows() == number ? CommandResult::ok() : CommandResult::failed(textOf(table));
    });
}

void Console::expectLog(const QString &text)
{
    const auto wanted = rowWantedOf(text);
    if (!wanted || wanted->wanted.text.isEmpty())
        return finish(CommandResult::failed(u"needs a row and a text"_s));
    watchTable(wanted->wanted.limit, [wanted](const LogTable &table) {
        const QString row = table.row(wanted->number).value_or(QString());
        return row.contains(wanted->wanted.text) ? CommandResult::ok(row)
                                                 : CommandResult::failed(textOf(table));
    });
}

void Console::expectNoLog(const QString &text)
{
    const Wanted wanted = wantedOf(text);
    if (wanted.text.isEmpty())
        return finish(CommandResult::failed(u"needs a text"_s));
    watchTable(wanted.limit, [wanted](const LogTable &table) {
        const int rows = table.rows();
        if (rows > MostRowsRead)
            return CommandResult::failed(u"%1 rows are too many to read"_s.arg(rows));
        for (int number = 1; number <= rows; ++number) {
            // A row that goes meanwhile is looked for in the next look.
            if (const auto row = table.row(number); !row || row->contains(wanted.text))
                return CommandResult::failed(textOf(table));
        }
        return CommandResult::ok();
    });
}

void Console::selectLogs(const QStringList &words)
{
    QList<int> numbers;
    for (const QString &word : words.mid(1))
        numbers.append(word.toInt());
    if (words.value(0) != "log"_L1 || numbers.isEmpty() || numbers.contains(0))
        return finish(CommandResult::failed(u"select log, and which rows?"_s));
    watchTable(Wanted::DefaultLimit, [numbers](const LogTable &table) {
        return table.select(numbers) ? CommandResult::ok() : CommandResult::failed(textOf(table));
    });
}

void Console::pressLogDelete(const QString &row)
{
    watchTable(Wanted::DefaultLimit, [number = row.toInt()](const LogTable &table) {
        return table.pressButton(number) ? CommandResult::ok() : CommandResult::failed(textOf(table));
    });
}

void Console::chooseEntry(const QString &name)
{
    watch(Wanted::DefaultLimit, [this, name] {
        const auto entry = findComboEntry(childrenRunning(m_settings.monitor), name);
        if (!entry)
            return CommandResult::failed(u"no box has such an entry"_s);
        if (!entry->isOpen) {
            if (!AccessibleTree::press(AccessibleTree::bus(), entry->box))
                return CommandResult::failed(u"the box does not open"_s);
            return CommandResult::failed(u"its entries do not show"_s); // they will in the next look
        }
        // A press on an entry would mark it and no more.
        return typed(QStringList{u"Home"_s} + QStringList(entry->place, u"Down"_s) + QStringList{u"Return"_s});
    });
}

void Console::watchTable(std::chrono::seconds limit, std::function<CommandResult(const LogTable &)> look)
{
    watch(limit, [this, look = std::move(look)] {
        const auto table = LogTable::find(childrenRunning(m_settings.monitor));
        return table ? look(*table) : noTable();
    });
}
