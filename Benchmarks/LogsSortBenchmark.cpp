// Sorting the list of the activity logs, 100,000 records. By date: beside one fixed parse of each text and a
// sort of as many 64-bit keys. By another column: beside a stable sort of the same texts.
#include "Classes/ACTIVITY_LOGS/LogSorting.h"

#include <QDate>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;
using LogSorting::Key;

namespace
{
constexpr int Records = 100'000;
constexpr int Days = 1'100;

struct Column {
    Key key;
    QString LogNode::*field;
};
const Column Columns[] = {{Key::Operation, &LogNode::optype},
                          {Key::Duration, &LogNode::duration},
                          {Key::Status, &LogNode::status},
                          {Key::Files, &LogNode::files}};

/// Three years of records in the order in which their files are read.
LogNodes history(bool isArchived)
{
    const QStringList statuses{u"Success"_s, u"Success*"_s, u"Failure"_s, u"Aborted"_s, u"-----"_s};
    std::mt19937 random(1); // NOLINT: the same list in each run
    const auto below = [&random](int end) { return int(random() % unsigned(end)); };
    LogNodes records;
    for (int i = 0; i < Records; ++i) {
        auto record = std::make_shared<LogNode>();
        const QDateTime time(QDate(2026, 9, 24).addDays(-(i * qint64(Days) / Records)),
                             QTime::fromMSecsSinceStartOfDay(below(86'400) * 1000));
        record->datetime = isArchived ? QLocale::c().toString(time, u"MMM dd, yyyy hh:mm:ss AP"_s)
                                      : time.toString(u"MM-dd-yyyy HH:mm:ss"_s);
        record->uname = u"ana@example.com"_s;
        record->optype = QString::number(1 + below(16));
        record->status = statuses[below(int(statuses.size()))];
        record->duration = QTime::fromMSecsSinceStartOfDay(below(86'400) * 1000).toString(u"HH:mm:ss"_s);
        record->files = QString::number(below(1'000'000));
        record->logfile = u"/home/ana/Backup/"_s + time.toString(u"MM-dd-yyyy-HH-mm-ss"_s);
        records.push_back(std::move(record));
    }
    return records;
}

const LogNodes &daily()
{
    static const LogNodes records = history(false);
    return records;
}

void sortByDate(benchmark::State &state, const LogNodes &asRead)
{
    const QDateTime now(QDate(2026, 9, 24), QTime(12, 0));
    for (auto _ : state) {
        state.PauseTiming();
        LogNodes records = asRead;
        state.ResumeTiming();
        LogSorting::sortRecords(records, true, now);
        benchmark::DoNotOptimize(records.data());
    }
    state.SetItemsProcessed(state.iterations() * Records);
}

void dates(benchmark::State &state)
{
    sortByDate(state, daily());
}

void datesOfArchive(benchmark::State &state)
{
    static const LogNodes records = history(true);
    sortByDate(state, records);
}

/// "09-24-2026 10:00:00" by the places of its digits.
quint64 fixedParse(const QString &text)
{
    const auto number = [units = text.utf16()](int place, int digits) {
        unsigned value = 0;
        for (int i = place; i < place + digits; ++i)
            value = value * 10 + (units[i] - unsigned(u'0'));
        return value;
    };
    const qint64 day = QDate(int(number(6, 4)), int(number(0, 2)), int(number(3, 2))).toJulianDay();
    return quint64(day) * 86'400 + (number(11, 2) * 60 + number(14, 2)) * 60 + number(17, 2);
}

void bareParseAndKeys(benchmark::State &state)
{
    const LogNodes &records = daily();
    for (auto _ : state) {
        std::vector<quint64> keys;
        keys.reserve(records.size());
        for (const auto &record : records)
            keys.push_back(fixedParse(record->datetime));
        std::sort(keys.begin(), keys.end(), std::greater<>());
        benchmark::DoNotOptimize(keys.data());
    }
    state.SetItemsProcessed(state.iterations() * Records);
}

void column(benchmark::State &state)
{
    const LogSorting::Words words{.operation = [](const QString &optype) { return u"Operation "_s + optype; }};
    for (auto _ : state) {
        state.PauseTiming();
        LogNodes records = daily();
        state.ResumeTiming();
        LogSorting::sortLogsArray(records, {Columns[state.range(0)].key, true}, words, {});
        benchmark::DoNotOptimize(records.data());
    }
    state.SetItemsProcessed(state.iterations() * Records);
}

void bareStableSort(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<QString> texts;
        for (const auto &record : daily())
            texts.push_back((*record).*Columns[state.range(0)].field);
        state.ResumeTiming();
        std::stable_sort(texts.begin(), texts.end());
        benchmark::DoNotOptimize(texts.data());
    }
    state.SetItemsProcessed(state.iterations() * Records);
}

BENCHMARK(dates)->Repetitions(9)->ReportAggregatesOnly()->Unit(benchmark::kMillisecond);
BENCHMARK(datesOfArchive)->Repetitions(9)->ReportAggregatesOnly()->Unit(benchmark::kMillisecond);
BENCHMARK(bareParseAndKeys)->Repetitions(9)->ReportAggregatesOnly()->Unit(benchmark::kMillisecond);
BENCHMARK(column)->DenseRange(0, 3)->Repetitions(5)->ReportAggregatesOnly()->Unit(benchmark::kMillisecond);
BENCHMARK(bareStableSort)
    ->DenseRange(0, 3)
    ->Repetitions(5)
    ->ReportAggregatesOnly()
    ->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
