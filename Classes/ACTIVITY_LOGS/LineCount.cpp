#include "Classes/ACTIVITY_LOGS/LineCount.h"

#include <algorithm>

LineCount::LineCount(const QByteArray &text, Letters letters)
    : m_text(text), m_length(text.size()), m_letters(letters)
{
}

void LineCount::feed(QByteArrayView piece)
{
    m_buffer += m_letters == Letters::AnyCase ? piece.toByteArray().toLower() : piece.toByteArray();
    qsizetype at = 0;
    for (;;) {
        if (m_lineCounted) {
            const qsizetype lineEnd = m_buffer.indexOf('\n', at);
            if (lineEnd < 0) {
                m_buffer.clear();
                return;
            }
            m_lineCounted = false;
            at = lineEnd + 1;
        }
        const qsizetype hit = m_text.indexIn(m_buffer, at);
        if (hit < 0)
            break;
        ++m_lines;
        m_lineCounted = true;
        at = hit + m_length;
    }
    m_buffer = m_buffer.right(std::min(m_length - 1, m_buffer.size() - at));
}
