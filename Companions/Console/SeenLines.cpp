#include "Companions/Console/SeenLines.h"

#include <algorithm>

void SeenLines::add(const QString &line)
{
    if (m_lines.size() >= Most)
        m_lines.removeFirst();
    m_lines.append(line);
}

bool SeenLines::take(const QString &text)
{
    const auto found = std::find_if(m_lines.cbegin(), m_lines.cend(),
                                    [&text](const QString &line) { return line.contains(text); });
    if (found == m_lines.cend())
        return false;
    m_lines.erase(m_lines.cbegin(), found + 1);
    return true;
}

bool SeenLines::holds(const QString &text) const
{
    return std::any_of(m_lines.cbegin(), m_lines.cend(),
                       [&text](const QString &line) { return line.contains(text); });
}
