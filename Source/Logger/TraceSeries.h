#pragma once

#include <QString>

#include <functional>
#include <map>

/// Traces events that may come a hundred times a second: the first of a series, and how many more there were
/// when the series ends. A series is over when a whole period between two calls of pass() has brought none.
class TraceSeries
{
public:
    using Sink = std::function<void(const QString &line)>;

    explicit TraceSeries(Sink sink) : m_sink(std::move(sink)) {}
    ~TraceSeries()
    {
        end([](const Series &) { return true; });
    }
    TraceSeries(const TraceSeries &) = delete;
    TraceSeries &operator=(const TraceSeries &) = delete;

    /// An event. `kind` tells which ones are alike, `detail` what is told of the first one behind it.
    void note(const QString &kind, const QString &detail = {});
    /// To be called every few seconds.
    void pass();

private:
    struct Series {
        int more = 0;         ///< that were not traced
        bool isQuiet = false; ///< since the last pass
    };
    void end(const std::function<bool(const Series &)> &isOver);

    const Sink m_sink;
    std::map<QString, Series> m_series;
};
