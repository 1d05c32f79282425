#include "Classes/ACTIVITY_LOGS/LogSorting.h"

#include "Classes/ACTIVITY_LOGS/DateForms.h"
#include "Classes/ACTIVITY_LOGS/LogDates.h"

#include <QCollator>
#include <QHash>

#include <algorithm>
#include <limits>
#include <numeric>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
using LogSorting::Trace;

/// Groups of the list by date, from the top.
enum Group : quint32 { InProgress, InProgressUndated, Dated, Undated, NoRecord };

/// What stands for a record while a list is sorted.
struct Place {
    qint64 key = 0;
    quint32 index = 0;
    quint32 group = 0;

    friend bool operator<(const Place &a, const Place &b)
    {
        return std::tie(a.group, a.key, a.index) < std::tie(b.group, b.key, b.index);
    }
};

bool isInProgress(const LogNode &record)
{
    return record.status == "In Progress"_L1;
}

void reorder(LogNodes &records, const std::vector<Place> &places)
{
    LogNodes sorted;
    sorted.reserve(records.size());
    for (const Place &place : places)
        sorted.push_back(std::move(records[place.index]));
    records = std::move(sorted);
}

/// One line of bounded length, whatever the text holds.
QString tracedText(const LogNodePtr &record)
{
    return record ? record->datetime.left(LogSorting::LongestTracedText).simplified() : QString();
}

enum class TraceForm { WithAnswers, Plain };

/// Tells of the records that could not be placed by date, each beside a neighbour that it was compared with.
void traceUndated(const LogNodes &records, const std::vector<Place> &places, TraceForm form, const Trace &trace)
{
    if (!trace || records.size() < 2)
        return;
    int traced = 0;
    for (std::size_t i = 0; i < records.size() && traced < LogSorting::MostTraced; ++i) {
        const quint32 group = places[i].group;
        if (group == InProgress || group == Dated)
            continue;
        ++traced;
        if (group == NoRecord) {
            trace(u"⚠️ [SORT RECORDS] Cast failed"_s);
            continue;
        }
        const std::size_t other = i > 0 ? i - 1 : 1;
        const bool isOtherDated = places[other].group == InProgress || places[other].group == Dated;
        QString line = u"⚠️ [SORT RECORDS] Date parsing failed: '"_s + tracedText(records[i]);
        if (form == TraceForm::WithAnswers)
            line += u"' → false, '"_s + tracedText(records[other]) +
                    (isOtherDated ? u"' → true"_s : u"' → false"_s);
        else
            line += u"', '"_s + tracedText(records[other]) + u'\'';
        trace(line);
    }
}

/// Day files newest first, the three of a day in the order of their names, records as they stood in them.
void sortUndated(const LogNodes &records, std::vector<Place> &places)
{
    const auto isUndated = [](const Place &place) {
        return place.group == InProgressUndated || place.group == Undated;
    };
    const auto newestDay = [](const QString &dayKey) { return dayKey.mid(6, 4) + dayKey.left(5); };
    std::vector<std::tuple<QString, QString, Place>> undated;
    for (const Place &place : places) {
        if (isUndated(place))
            undated.emplace_back(newestDay(records[place.index]->dayKey), records[place.index]->dayKey, place);
    }
    std::sort(undated.begin(), undated.end(), [&records](const auto &a, const auto &b) {
        const auto &[dayA, fileA, placeA] = a;
        const auto &[dayB, fileB, placeB] = b;
        return std::tie(dayB, fileA, records[placeA.index]->place, placeA.index) <
               std::tie(dayA, fileB, records[placeB.index]->place, placeB.index);
    });
    for (std::size_t i = 0; i < undated.size(); ++i)
        places[std::get<Place>(undated[i]).index].key = qint64(i);
}

void sortByDate(LogNodes &records, bool newestFirst, const QDateTime &now, TraceForm form, const Trace &trace)
{
    LogDates dates(now);
    std::vector<Place> places;
    places.reserve(records.size());
    bool areAllDated = true;
    for (const LogNodePtr &record : records) {
        Place place{.index = quint32(places.size()), .group = NoRecord};
        if (record) {
            const auto time = dates.wallTime(record->datetime);
            place.key = newestFirst ? -time.value_or(0) : time.value_or(0);
            place.group =
                isInProgress(*record) ? (time ? InProgress : InProgressUndated) : (time ? Dated : Undated);
            areAllDated = areAllDated && time;
        } else {
            areAllDated = false;
        }
        places.push_back(place);
    }
    if (!areAllDated) {
        traceUndated(records, places, form, trace);
        sortUndated(records, places);
    }
    std::sort(places.begin(), places.end());
    reorder(records, places);
}

/// Sorts by the keys of texts, each worked out once for all records that share the text: a list has many
/// records and few statuses. `textOf` gives a record's text, `keyOf` what is compared for a text.
template<class TextOf, class KeyOf>
void sortByText(LogNodes &records, bool ascending, TextOf textOf, KeyOf keyOf)
{
    QHash<QStringView, quint32> known;
    std::vector<decltype(keyOf(QString()))> keys;
    std::vector<Place> places;
    places.reserve(records.size());
    for (const LogNodePtr &record : records) {
        Place place{.index = quint32(places.size()), .group = NoRecord};
        if (record) {
            const QString &text = textOf(*record);
            const auto found = known.constFind(text);
            place.key = found != known.cend() ? *found : qint64(keys.size());
            if (found == known.cend()) {
                known.insert(text, quint32(keys.size()));
                keys.push_back(keyOf(text));
            }
            place.group = Dated;
        }
        places.push_back(place);
    }

    std::vector<quint32> order(keys.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&keys](quint32 a, quint32 b) { return keys[a] < keys[b]; });
    std::vector<qint64> placeOfKey(keys.size());
    qint64 rank = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && keys[order[i - 1]] < keys[order[i]])
            ++rank;
        placeOfKey[order[i]] = ascending ? rank : -rank;
    }
    for (Place &place : places) {
        if (place.group != NoRecord)
            place.key = placeOfKey[std::size_t(place.key)];
    }
    std::sort(places.begin(), places.end());
    reorder(records, places);
}

} // namespace

std::array<LogSorting::SortDescriptor, 5> LogSorting::sortTableColumns()
{
    return {SortDescriptor{Key::Operation}, SortDescriptor{Key::DateTime}, SortDescriptor{Key::Duration},
            SortDescriptor{Key::Status}, SortDescriptor{Key::Files}};
}

void LogSorting::sortRecords(LogNodes &records, bool newestFirst, const QDateTime &now, const Trace &trace)
{
    sortByDate(records, newestFirst, now, TraceForm::WithAnswers, trace);
}

void LogSorting::sortLogsArray(LogNodes &records, SortDescriptor descriptor, const Words &words,
                               const QDateTime &now, const Trace &trace)
{
    QCollator collator(words.locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto shown = [&collator](const auto &word) {
        return [&collator, &word](const QString &text) { return collator.sortKey(word ? word(text) : text); };
    };
    const bool ascending = descriptor.isAscending;
    switch (descriptor.key) {
    case Key::DateTime:
        return sortByDate(records, !ascending, now, TraceForm::Plain, trace);
    case Key::Operation:
        return sortByText(records, ascending, std::mem_fn(&LogNode::optype), shown(words.operation));
    case Key::Status:
        return sortByText(records, ascending, std::mem_fn(&LogNode::status), shown(words.status));
    case Key::Duration:
        return sortByText(records, ascending, std::mem_fn(&LogNode::duration), numericKey);
    case Key::Files:
        return sortByText(records, ascending, std::mem_fn(&LogNode::files), numericKey);
    }
}

QString LogSorting::numericKey(QStringView text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    QString key;
    key.reserve(text.size() + 4);
    for (qsizetype i = 0; i < text.size();) {
        if (!isDigit(text[i])) {
            key += text[i++];
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && isDigit(text[end]))
            ++end;
        while (i < end && text[i] == u'0')
            ++i;
        // A number stands where a digit would, and of two the longer is the greater.
        key += u'0';
        key += QChar(char16_t(qMin<qsizetype>(end - i, std::numeric_limits<char16_t>::max())));
        key += text.sliced(i, end - i);
        i = end;
    }
    return key;
}
