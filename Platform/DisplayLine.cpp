#include "Platform/DisplayLine.h"

#include "Platform/Limits.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr char16_t Ellipsis = u'\u2026';
constexpr char16_t LeftToRightMark = u'\u200E';
constexpr char16_t BreakOpportunity = u'\u200B';
constexpr int LongestUnbrokenRun = 24;
constexpr int LongestToolTipLine = 60;
constexpr int ToolTipWidth = 480; ///< of one with several lines

bool parts(QChar unit)
{
    return unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator || unit == u'\u0085' ||
           (unit >= u'\t' && unit <= u'\r');
}

/// Of letters that most titles are made of, nothing is ever replaced, dropped or turned.
bool isPlain(QChar unit)
{
    const char16_t c = unit.unicode();
    return (c >= 0x20 && c < 0x7F) || (c >= 0xA0 && c < 0x590) || (c >= 0x3000 && c < 0xA000);
}

bool isLoneSurrogate(const QString &text, qsizetype at)
{
    if (text[at].isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    return text[at].isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

bool hasRightToLeftLetters(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar unit) {
        // Planes of which only the surrogates are seen here count as well: a mark too many does no harm.
        return unit.isHighSurrogate() || unit.direction() == QChar::DirR || unit.direction() == QChar::DirAL;
    });
}

QString withPartsInPlace(const QString &line)
{
    QString marked;
    marked.reserve(line.size() + 16);
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == u'/') {
            marked += QChar(LeftToRightMark);
            marked += u'/';
            marked += QChar(LeftToRightMark);
            continue;
        }
        if (line[i] == u' ' && i + 1 < line.size() && line[i + 1] == u' ')
            marked += QChar(LeftToRightMark);
        marked += line[i];
    }
    return marked;
}
} // namespace

bool DisplayLine::turnsDirection(char16_t unit)
{
    return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069) || unit == 0x200E ||
           unit == 0x200F || unit == 0x061C;
}

QString DisplayLine::bounded(const QString &text, qsizetype limit)
{
    if (text.size() <= limit)
        return text;
    qsizetype head = limit / 2;
    qsizetype tail = limit - head - 1;
    if (head > 0 && text[head - 1].isHighSurrogate())
        --head;
    if (tail > 0 && text[text.size() - tail].isLowSurrogate())
        --tail;
    return text.left(head) + QChar(Ellipsis) + text.right(tail);
}

QString DisplayLine::singleLine(const QString &text)
{
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString line;
    line.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (turnsDirection(unit.unicode()))
            continue;
        if (parts(unit))
            line += u' ';
        else if (unit.category() == QChar::Other_Control || isLoneSurrogate(text, i))
            line += QChar(QChar::ReplacementCharacter);
        else
            line += unit;
    }
    return hasRightToLeftLetters(line) ? withPartsInPlace(line) : line;
}

QString DisplayLine::plainTip(const QString &text)
{
    QString tip;
    qsizetype from = 0;
    for (int lines = 0; lines < Limits::TipLines && from <= text.size(); ++lines) {
        const qsizetype end = text.indexOf(u'\n', from);
        const qsizetype size = (end < 0 ? text.size() : end) - from;
        if (lines > 0)
            tip += u'\n';
        // Of a line that goes on for ever only its beginning is looked at.
        tip +=
            singleLine(bounded(text.mid(from, std::min(size, 2 * Limits::TipLineUnits)), Limits::TipLineUnits));
        from += size + 1;
    }
    if (from <= text.size())
        tip += u"\n\u2026"_s;
    // On every line, for a panel may look further than the library, which stops at the first line's end. What
    // the library takes for a tag ends with a bracket and may begin with blanks of any kind.
    static const QRegularExpression markup(u"(<(?=[A-Za-z/!?]|[^<>]*>)|&(?=[A-Za-z#]))"_s);
    return tip.replace(markup, u"\\1\u200B"_s);
}

QString DisplayLine::toolTip(const QString &text)
{
    const QString line = singleLine(bounded(text, ToolTipLimit));
    QString broken;
    broken.reserve(line.size() + line.size() / 8);
    int run = 0;
    for (const QChar unit : line) {
        if (run >= LongestUnbrokenRun && !unit.isLowSurrogate() && !unit.isMark()) {
            broken += QChar(BreakOpportunity);
            run = 0;
        }
        broken += unit;
        run = unit.isSpace() ? 0 : run + 1;
        if (unit == u'/' || unit == u'_') {
            broken += QChar(BreakOpportunity);
            run = 0;
        }
    }
    const QString markup = broken.toHtmlEscaped();
    if (line.size() <= LongestToolTipLine)
        return u"<p style=\"white-space:pre\">%1</p>"_s.arg(markup);
    // Left to itself, a tip of several lines is nearly as high as it is wide.
    return u"<table width=\"%1\"><tr><td>%2</td></tr></table>"_s.arg(QString::number(ToolTipWidth), markup);
}
