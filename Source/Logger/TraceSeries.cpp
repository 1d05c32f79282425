#include "Source/Logger/TraceSeries.h"

using namespace Qt::StringLiterals;

void TraceSeries::note(const QString &kind, const QString &detail)
{
    const auto [series, isFirst] = m_series.try_emplace(kind);
    series->second.isQuiet = false;
    if (isFirst)
        m_sink(kind + detail);
    else
        ++series->second.more;
}

void TraceSeries::pass()
{
    end([](const Series &series) { return series.isQuiet; });
    for (auto &[kind, series] : m_series)
        series.isQuiet = true;
}

void TraceSeries::end(const std::function<bool(const Series &)> &isOver)
{
    for (auto entry = m_series.begin(); entry != m_series.end();) {
        const auto &[kind, series] = *entry;
        if (!isOver(series)) {
            ++entry;
            continue;
        }
        if (series.more > 0)
            m_sink(kind + u" (%1 more)"_s.arg(series.more));
        entry = m_series.erase(entry);
    }
}
