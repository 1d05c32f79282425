#include "Classes/Progress/ProgressFigures.h"

#include "Classes/Progress/ProgressRules.h"

#include <algorithm>
#include <utility>

namespace
{
// In the order of ProgressFigures::Figure; spelled as they come.
constexpr std::array<std::string_view, ProgressFigures::FigureCount> Keys{
    "percentage",  "transferSpeed", "estimatedTime",       "elapsedtime",         "filename",
    "tansferMode", "filesize",      "dedupRemainingFiles", "dedupCompletedFiles",
};
} // namespace

void ProgressFigures::take(std::string_view key, std::string_view utf8)
{
    const auto found = std::ranges::find(Keys, key);
    if (found == Keys.end())
        return;
    const auto figure = static_cast<std::size_t>(found - Keys.begin());
    if (m_present[figure])
        return; // of a key that came twice the first counts
    m_present[figure] = true;
    Entry &entry = m_figures[figure];
    if (entry.bytes == utf8)
        return;
    entry.bytes = ProgressRules::shortened(utf8);
    entry.textIsStale = true;
}

const QString &ProgressFigures::text(Figure figure) const
{
    const Entry &entry = m_figures[figure];
    if (std::exchange(entry.textIsStale, false))
        entry.text = ProgressRules::presentable(entry.bytes);
    return entry.text;
}

void ProgressFigures::take(const QVariantMap &dictionary)
{
    for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry) {
        if (entry->typeId() == QMetaType::QString)
            take(entry.key().toStdString(), entry->toString().toStdString());
    }
}
