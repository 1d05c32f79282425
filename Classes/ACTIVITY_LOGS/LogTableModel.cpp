#include "Classes/ACTIVITY_LOGS/LogTableModel.h"

#include "Classes/ACTIVITY_LOGS/LogOperations.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/TrayImage.h"
#include "Platform/DisplayLine.h"
#include "Utility/Language/ActivityLogsVC.h"
#include "Utility/Language/LanguageManager.h"

#include <algorithm>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace
{
/// A cell has room for less; what a record holds has no limit.
constexpr qsizetype LongestCell = 256;
/// Words that a day file may make up are looked up anew rather than kept without end.
constexpr qsizetype MostWordsKept = 1000;
/// From here on it is cheaper to show the list anew than to take away rows one by one.
constexpr std::size_t FewRows = 64;

const LocalizedText *const Titles[LogColumns] = {
    &ActivityLogsVC::operationColumn, &ActivityLogsVC::dateTimeColumn, &ActivityLogsVC::durationColumn,
    &ActivityLogsVC::statusColumn,    &ActivityLogsVC::filesColumn,    nullptr,
};

QString presentable(const QString &text)
{
    const bool isPlain = text.size() <= LongestCell && std::all_of(text.begin(), text.end(), [](QChar unit) {
                             return unit >= u' ' && unit < u'\x7F';
                         });
    return isPlain ? text : DisplayLine::singleLine(DisplayLine::bounded(text, LongestCell));
}

QIcon image(const QString &name, bool forDarkGround)
{
    return trayImage(
        Bundle::main().resource(u"images/%1%2.svg"_s.arg(name, forDarkGround ? u"_alt"_s : QString())));
}

template<class Value>
void makeRoom(QHash<QString, Value> &words)
{
    if (words.size() >= MostWordsKept)
        words.clear();
}
} // namespace

LogTableModel::LogTableModel(QObject *parent) : QAbstractTableModel(parent), m_dates(m_now)
{
    setDark(false);
}

void LogTableModel::setRecords(LogNodes records, const QDateTime &now)
{
    beginResetModel();
    m_now = now;
    m_dates = LogDates(now);
    // Years of records take longer to free than a frame lasts.
    m_freeing.async([old = std::exchange(m_records, std::move(records))] {});
    m_dateTimes.assign(m_records.size(), QString());
    endResetModel();
}

void LogTableModel::removeRecords(const LogNodes &records)
{
    const std::unordered_set<LogNodePtr> gone(records.begin(), records.end());
    std::vector<int> rows;
    for (std::size_t row = 0; row < m_records.size(); ++row) {
        if (gone.contains(m_records[row]))
            rows.push_back(int(row));
    }
    if (rows.size() <= FewRows)
        return removeFew(rows);
    LogNodes left;
    left.reserve(m_records.size() - rows.size());
    std::copy_if(m_records.begin(), m_records.end(), std::back_inserter(left),
                 [&gone](const LogNodePtr &record) { return !gone.contains(record); });
    setRecords(std::move(left), m_now);
}

void LogTableModel::removeFew(std::span<const int> rows)
{
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        beginRemoveRows({}, *row, *row);
        m_records.erase(m_records.begin() + *row);
        m_dateTimes.erase(m_dateTimes.begin() + *row);
        endRemoveRows();
    }
}

LogNodePtr LogTableModel::record(int row) const
{
    return row >= 0 && row < rowCount() ? m_records[std::size_t(row)] : nullptr;
}

void LogTableModel::setDark(bool dark)
{
    m_isDark = dark;
    m_operations.clear();
    for (std::size_t state = 0; state < LogStates; ++state)
        m_stateImages[state] = image(QString::fromUtf16(logStateLook(LogState(state)).image), dark);
    if (!m_records.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, LogColumns - 1), {Qt::DecorationRole});
}

const LogTableModel::Operation &LogTableModel::operation(int row) const
{
    const QString &optype = m_records[std::size_t(row)]->optype;
    if (const auto known = m_operations.constFind(optype); known != m_operations.constEnd())
        return *known;
    makeRoom(m_operations);
    bool isNumber = false;
    const int number = optype.toInt(&isNumber);
    return *m_operations.insert(optype, {presentable(LogOperations::operationName(optype)),
                                         image(logOperationImage(isNumber ? number : 0), m_isDark)});
}

const LogTableModel::Status &LogTableModel::status(int row) const
{
    const QString &word = m_records[std::size_t(row)]->status;
    if (const auto known = m_statuses.constFind(word); known != m_statuses.constEnd())
        return *known;
    makeRoom(m_statuses);
    return *m_statuses.insert(word, {presentable(localized(word)), logStatusLook(word)});
}

const QString &LogTableModel::dateTime(int row) const
{
    QString &known = m_dateTimes[std::size_t(row)];
    if (known.isNull()) {
        known = m_dates.formatted(m_records[std::size_t(row)]->datetime);
        if (known.isNull())
            known = u""_s;
    }
    return known;
}

QString LogTableModel::text(int row, LogColumn column) const
{
    if (row < 0 || row >= rowCount())
        return {};
    const LogNode &record = *m_records[std::size_t(row)];
    switch (column) {
    case LogColumn::Operation:
        return operation(row).text;
    case LogColumn::DateTime:
        return dateTime(row);
    case LogColumn::Duration:
        return presentable(record.duration);
    case LogColumn::Status:
        return status(row).text;
    case LogColumn::Files:
        // A job without a result has no count to speak of, whatever its record says.
        return record.status.isEmpty() ? QString() : presentable(record.files);
    case LogColumn::Delete:
        return ActivityLogsVC::deleteLog;
    }
    return {};
}

const QIcon &LogTableModel::operationImage(int row) const
{
    return operation(row).image;
}

const LogStatusLook &LogTableModel::statusLook(int row) const
{
    return status(row).look;
}

int LogTableModel::find(const QString &typed, int first) const
{
    const int rows = rowCount();
    for (int step = 0; step < rows; ++step) {
        const int row = (std::max(first, 0) + step) % rows;
        if (operation(row).text.startsWith(typed, Qt::CaseInsensitive) ||
            dateTime(row).startsWith(typed, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}

Qt::Alignment LogTableModel::alignment(LogColumn column)
{
    const bool isNumber = column == LogColumn::Duration || column == LogColumn::Files;
    return Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft);
}

QString LogTableModel::identifier(LogColumn column)
{
    static const QString names[LogColumns] = {u"Operation"_s, u"DateTime"_s, u"Duration"_s,
                                              u"Status"_s,    u"Files"_s,    u"Delete"_s};
    return names[int(column)];
}

int LogTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_records.size());
}

int LogTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : LogColumns;
}

QVariant LogTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const auto column = LogColumn(index.column());
    if (role == Qt::TextAlignmentRole)
        return int(alignment(column));
    if (role == Qt::DecorationRole && column == LogColumn::Operation)
        return operationImage(index.row());
    if (role == Qt::DecorationRole && column == LogColumn::Status)
        return statusImage(statusLook(index.row()).state);
    if (role == Qt::AccessibleTextRole || (role == Qt::DisplayRole && column != LogColumn::Delete))
        return text(index.row(), column);
    return {};
}

QVariant LogTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= LogColumns)
        return {};
    if (role == Qt::DisplayRole)
        return Titles[section] ? Titles[section]->text() : QString();
    if (role == Qt::TextAlignmentRole)
        return int(alignment(LogColumn(section)));
    return {};
}

Qt::ItemFlags LogTableModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::ItemFlags(Qt::NoItemFlags);
}
