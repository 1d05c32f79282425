#include "Platform/Desktop/ElidedLabel.h"

#include "Platform/DisplayLine.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace
{
constexpr int MaxUnitsMeasured = 4096; ///< wider than any screen, and soon measured
} // namespace

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText); // before any text, which may look like markup
}

void ElidedLabel::setText(const QString &text)
{
    if (text == QLabel::text())
        return;
    QLabel::setText(text);
    setToolTip(DisplayLine::bounded(text, DisplayLine::ToolTipLimit));
}

void ElidedLabel::setKeptEnd(qsizetype units)
{
    m_keptEnd = std::max<qsizetype>(units, 0);
    update();
}

void ElidedLabel::setReservedText(const QString &text)
{
    m_reservedText = text;
    updateGeometry();
}

QString ElidedLabel::shownText() const
{
    const QString whole = text();
    const QFontMetrics metrics = fontMetrics();
    const int room = contentsRect().width() - 2 * margin();
    // More units than points of room can't be shown, unless they take no width at all.
    const qsizetype limit = std::clamp(2 * room, 64, MaxUnitsMeasured);
    QString line = DisplayLine::singleLine(DisplayLine::bounded(whole, limit));
    if (metrics.horizontalAdvance(line) <= room)
        return line;
    if (m_keptEnd > 0 && m_keptEnd < std::min(whole.size(), limit)) {
        const QString end = DisplayLine::singleLine(whole.right(m_keptEnd));
        const QString start = DisplayLine::singleLine(DisplayLine::bounded(whole.chopped(m_keptEnd), limit));
        const int roomBefore = room - metrics.horizontalAdvance(end);
        if (roomBefore > room / 5)
            return metrics.elidedText(start, Qt::ElideMiddle, roomBefore) + end;
    }
    return metrics.elidedText(line, Qt::ElideMiddle, room);
}

QSize ElidedLabel::sizeHint() const
{
    ensurePolished();
    const QFontMetrics metrics = fontMetrics();
    const int around = 2 * margin();
    const QMargins contents = contentsMargins();
    return {metrics.horizontalAdvance(m_reservedText) + around + contents.left() + contents.right(),
            metrics.height() + around + contents.top() + contents.bottom()};
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    // The property is plain text; shown as it is, a file name could be taken for markup, and would not wrap.
    if (toolTip().isEmpty())
        event->ignore();
    else
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), DisplayLine::toolTip(toolTip()), this,
                           {}, toolTipDuration());
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    const auto place = QStyle::visualAlignment(Qt::LeftToRight, alignment());
    const QString line = shownText();
    const QFontMetrics metrics = fontMetrics();
    const QSize size(metrics.horizontalAdvance(line), metrics.height());
    const QRect box = QStyle::alignedRect(Qt::LeftToRight, place, size, area);
    // On the base line of the label's own font: another script's font, taller, would push the line out of it.
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    painter.drawText(QPoint(box.left(), box.top() + metrics.ascent()), line);
}
