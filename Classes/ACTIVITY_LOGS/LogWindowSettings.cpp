#include "Classes/ACTIVITY_LOGS/LogWindowSettings.h"

#include "Platform/UserDefaults.h"
#include "Source/Logger/WriteTrace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString FrameKey = u"CVActivityLogsFrame"_s;
const QString ColumnsKey = u"CVActivityLogsColumns"_s;
const QString ListKey = u"CVActivityLogsListPercent"_s;
constexpr qsizetype LargestFrame = 1024; ///< some 70 bytes are usual
constexpr int SmallestList = 10, LargestList = 90;

std::optional<LogColumn> columnOf(const QString &identifier)
{
    for (int column = 0; column < LogColumns; ++column) {
        if (LogTableModel::identifier(LogColumn(column)) == identifier)
            return LogColumn(column);
    }
    return std::nullopt;
}

QVariant stored(const std::vector<LogColumnWidth> &columns)
{
    QVariantList list;
    for (const LogColumnWidth &column : columns)
        list.append(
            QVariantMap{{u"column"_s, LogTableModel::identifier(column.column)}, {u"width"_s, column.width}});
    return list;
}
} // namespace

std::vector<LogColumnWidth> LogWindowSettings::columnsOf(const QVariant &stored)
{
    std::vector<LogColumnWidth> columns;
    if (stored.typeId() != QMetaType::QVariantList)
        return columns;
    for (const QVariant &entry : stored.toList()) {
        const QVariantMap row = entry.toMap();
        const auto column = columnOf(row.value(u"column"_s).toString());
        const bool isKnown =
            std::any_of(columns.begin(), columns.end(),
                        [&column](const LogColumnWidth &other) { return other.column == column; });
        if (column && !isKnown)
            columns.push_back({*column, row.value(u"width"_s).toInt()});
    }
    return columns;
}

LogWindowSettings LogWindowSettings::load(const UserDefaults &defaults)
{
    LogWindowSettings settings;
    if (const QVariant frame = defaults.value(FrameKey);
        frame.typeId() == QMetaType::QByteArray && frame.toByteArray().size() <= LargestFrame)
        settings.frame = frame.toByteArray();
    settings.columns = columnsOf(defaults.value(ColumnsKey));
    const int percent = defaults.value(ListKey).toInt();
    settings.listPercent = percent >= SmallestList && percent <= LargestList ? percent : 0;
    return settings;
}

void LogWindowSettings::save(UserDefaults &defaults) const
{
    if (*this == load(defaults))
        return;
    defaults.setValue(FrameKey, frame);
    defaults.setValue(ColumnsKey, stored(columns));
    defaults.setValue(ListKey, listPercent);
    traceFailure(defaults.path(), defaults.synchronize());
}
