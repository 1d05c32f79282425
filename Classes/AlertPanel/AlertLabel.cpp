#include "Classes/AlertPanel/AlertLabel.h"

#include <QFocusEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

void AlertLabel::showText(const QString &text, int maximumLines)
{
    setTextFormat(Qt::PlainText); // before the text, which may look like markup
    setTextInteractionFlags(Qt::NoTextInteraction);
    setText(text);
    m_maximumLines = maximumLines;
    m_layout.reset();
    updateGeometry();
}

void AlertLabel::showTextWithLink(const QString &text, AlertRules::Link link, std::function<void()> opened)
{
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_linkedText = text;
    m_link = link;
    setLinkedText();
    disconnect(this, &QLabel::linkActivated, nullptr, nullptr);
    connect(this, &QLabel::linkActivated, this, [opened = std::move(opened)] { opened(); });
}

int AlertLabel::linePitch() const
{
    return std::max(AlertRules::PointsPerLine, fontMetrics().height());
}

int AlertLabel::heightForWidth(int width) const
{
    if (textFormat() == Qt::RichText)
        return QLabel::heightForWidth(width);
    const QTextLayout &layout = layoutFor(width);
    if (layout.lineCount() == 0)
        return 0;
    const QTextLine last = layout.lineAt(layout.lineCount() - 1);
    return int(std::ceil(last.y() + last.height() + (linePitch() - fontMetrics().height()) / 2.0));
}

void AlertLabel::paintEvent(QPaintEvent *event)
{
    if (textFormat() == Qt::RichText)
        return QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layoutFor(width()).draw(&painter, {}, {}, event->rect());
}

void AlertLabel::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    // The key that brings the focus here brings it to the link: there is nothing else to reach.
    const bool byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (textFormat() == Qt::RichText && byKey)
        focusNextPrevChild(true);
}

void AlertLabel::changeEvent(QEvent *event)
{
    const bool isStyle = event->type() == QEvent::StyleChange;
    if (isStyle || event->type() == QEvent::FontChange)
        m_layout.reset();
    QLabel::changeEvent(event);
    if (textFormat() == Qt::RichText && (isStyle || event->type() == QEvent::PaletteChange))
        setLinkedText();
}

void AlertLabel::setLinkedText()
{
    // With its colour, since a document otherwise takes that of the application when it is read, for good. It
    // is the window's: a style sheet keeps a label from inheriting it.
    setText(u"<p style=\"margin: 0; line-height: %1px\">"_s.arg(linePitch()) +
            m_linkedText.left(m_link.start).toHtmlEscaped() +
            u"<a href=\"link\" style=\"color: %1; text-decoration: underline\">"_s.arg(
                window()->palette().color(QPalette::Link).name()) +
            m_linkedText.mid(m_link.start, m_link.length).toHtmlEscaped() + u"</a>"_s +
            m_linkedText.mid(m_link.start + m_link.length).toHtmlEscaped() + u"</p>"_s);
}

const QTextLayout &AlertLabel::layoutFor(int width) const
{
    if (m_layout && m_layoutWidth == width)
        return *m_layout;
    QString shown = text();
    shown.replace(u'\n', QChar::LineSeparator);
    for (bool whole = false; !whole;) {
        whole = true;
        m_layout = std::make_unique<QTextLayout>(shown, font(), this);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        m_layout->setTextOption(option);
        m_layout->beginLayout();
        const int pitch = linePitch();
        qreal bottom = 0;
        for (QTextLine line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
            line.setLineWidth(width);
            const qreal height =
                std::max(line.height(), qreal(pitch)); // a line of another script may be higher
            line.setPosition(QPointF(0, bottom + std::floor((height - line.height()) / 2)));
            bottom += height;
            const qsizetype end = line.textStart() + line.textLength();
            if (m_layout->lineCount() == m_maximumLines && end < shown.size()) {
                shown = shown.left(line.textStart()) + lastLine(shown, line.textStart(), width);
                whole = false; // once more: the new last line fits
                break;
            }
        }
        m_layout->endLayout();
    }
    m_layoutWidth = width;
    return *m_layout;
}

QString AlertLabel::lastLine(const QString &shown, qsizetype start, int width) const
{
    const QString rest = shown.mid(start).section(QChar::LineSeparator, 0, 0);
    const QString more = rest.size() < shown.size() - start ? rest + QChar(0x2026) : rest;
    return fontMetrics().elidedText(more, Qt::ElideRight, width);
}
