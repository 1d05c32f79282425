#pragma once

#include <QStringList>

/// What a program has printed and nobody has asked for yet, oldest first.
class SeenLines
{
public:
    void add(const QString &line);

    /// Passes over lines up to the first that holds `text`, which is taken too. False, and nothing is taken,
    /// when none does. So two calls in a row find two lines in the order in which they were printed.
    [[nodiscard]] bool take(const QString &text);

    /// Whether a line that is left holds `text`.
    [[nodiscard]] bool holds(const QString &text) const;

    [[nodiscard]] const QStringList &left() const { return m_lines; }

private:
    static constexpr qsizetype Most = 10'000; ///< the oldest go

    QStringList m_lines;
};
