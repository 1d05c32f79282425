#pragma once

#include <QString>
#include <QVariantMap>

#include <array>
#include <string>
#include <string_view>

/// The figures of the last reports, ready for display. Reports may come by the thousand and mostly repeat what
/// the last one said, so a figure is kept as the bytes that came, and becomes text only when it is asked for.
class ProgressFigures
{
public:
    enum Figure {
        Percentage,
        TransferSpeed,
        EstimatedTime,
        ElapsedTime,
        FileName,
        TransferMode,
        FileSize,
        RemainingFiles,
        CompletedFiles,
        FigureCount
    };

    /// A new report begins: it has no figure yet.
    void begin() { m_present = {}; }
    /// Takes a figure of the report by its key; a key that is no figure is ignored.
    void take(std::string_view key, std::string_view utf8);
    /// Takes a whole report that came as a dictionary; only texts are figures.
    void take(const QVariantMap &dictionary);

    /// Whether the report that was begun last has the figure.
    [[nodiscard]] bool has(Figure figure) const { return m_present[figure]; }
    /// The figure as it came last, shown on one line.
    [[nodiscard]] const QString &text(Figure figure) const;
    [[nodiscard]] std::string_view bytes(Figure figure) const { return m_figures[figure].bytes; }

private:
    struct Entry {
        std::string bytes;
        mutable QString text;
        mutable bool textIsStale = false;
    };
    std::array<Entry, FigureCount> m_figures;
    std::array<bool, FigureCount> m_present{};
};
