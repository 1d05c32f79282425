#pragma once

#include <QByteArray>
#include <QByteArrayMatcher>
#include <QByteArrayView>

/// Counts the lines of a stream that hold a text, as grep would print them: a line once, the last one also
/// without its line feed. Bytes are bytes, whatever else the stream holds. Keeps no more than the text's length
/// from one piece to the next.
class LineCount
{
public:
    enum class Letters { Exact, AnyCase }; ///< AnyCase for those of ASCII

    /// `text` holds no line feed; it is in lower case for AnyCase.
    LineCount(const QByteArray &text, Letters letters);

    void feed(QByteArrayView piece);
    [[nodiscard]] qint64 lines() const { return m_lines; }

private:
    QByteArrayMatcher m_text;
    qsizetype m_length;
    Letters m_letters;
    QByteArray m_buffer;        ///< what a hit may still begin in, and the piece behind it
    bool m_lineCounted = false; ///< the rest of the line doesn't count any more
    qint64 m_lines = 0;
};
