#include "Classes/ACTIVITY_LOGS/LogTableDelegate.h"

#include "Classes/ACTIVITY_LOGS/LogTableModel.h"
#include "Classes/ACTIVITY_LOGS/LogTableView.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/TrayImage.h"
#include "Platform/Desktop/WindowLook.h"
#include "Platform/DisplayLine.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Padding = 12; ///< between a cell's edge and what stands in it
constexpr int ImageSide = 20;
constexpr int BesideImage = 8;
constexpr int ButtonSide = 26;
constexpr int FocusBar = 3; ///< at the row that the keyboard is at

QRect imageRect(const QRect &cell, int side)
{
    return {cell.left() + Padding, cell.top() + (cell.height() - side) / 2, side, side};
}
} // namespace

LogTableDelegate::LogTableDelegate(LogTableView &view) : QAbstractItemDelegate(&view), m_view(view)
{
    setDark(false);
}

void LogTableDelegate::setDark(bool dark)
{
    const auto of = [dark](const char16_t *name) { return WindowLook::colour(name, dark); };
    m_text = of(u"text");
    m_line = of(u"line");
    m_selection = of(u"selection");
    m_hover = of(u"buttonHover");
    m_pressed = of(u"line");
    m_accent = of(u"accent");
    for (std::size_t state = 0; state < LogStates; ++state)
        m_stateColours[state] = of(logStateLook(LogState(state)).colour);
    m_deleteImage =
        trayImage(Bundle::main().resource(u"images/log_tool_delete%1.svg"_s.arg(dark ? u"_alt"_s : QString())));
}

QRect LogTableDelegate::buttonRect(const QRect &cell)
{
    QRect button(0, 0, ButtonSide, ButtonSide);
    button.moveCenter(cell.center());
    return button;
}

int LogTableDelegate::widthFor(int textWidth, bool hasImage)
{
    return textWidth + 2 * Padding + (hasImage ? ImageSide + BesideImage : 0);
}

void LogTableDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    paintGround(*painter, option, index);
    const auto column = LogColumn(index.column());
    if (column == LogColumn::Delete)
        return paintButton(*painter, option, index);
    const QRect cell = option.rect.adjusted(isLeftmost(index) ? Indent : 0, 0, 0, 0);

    const LogTableModel &model = m_view.logModel();
    QRect place = cell.adjusted(Padding, 0, -Padding, -1);
    QColor ink = m_text;
    if (column == LogColumn::Operation) {
        model.operationImage(index.row()).paint(painter, imageRect(cell, ImageSide));
        place.setLeft(place.left() + ImageSide + BesideImage);
    } else if (column == LogColumn::Status) {
        const LogState state = model.statusLook(index.row()).state;
        ink = m_stateColours[std::size_t(state)];
        // A record without a result has neither word nor image.
        if (!model.record(index.row())->status.isEmpty())
            model.statusImage(state).paint(painter, imageRect(cell, ImageSide - 4));
        place.setLeft(place.left() + ImageSide - 4 + BesideImage);
    }
    const QString text = model.text(index.row(), column);
    if (text.isEmpty() || place.width() <= 0)
        return;
    painter->setPen(ink);
    const bool fits = option.fontMetrics.horizontalAdvance(text) <= place.width();
    painter->drawText(place, int(LogTableModel::alignment(column)) | Qt::TextSingleLine,
                      fits ? text : option.fontMetrics.elidedText(text, Qt::ElideRight, place.width()));
}

bool LogTableDelegate::isLeftmost(const QModelIndex &index) const
{
    return m_view.horizontalHeader()->visualIndex(index.column()) == 0;
}

void LogTableDelegate::paintGround(QPainter &painter, const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const QRect &cell = option.rect;
    if (option.state.testFlag(QStyle::State_Selected))
        painter.fillRect(cell, m_selection);
    else if (index.row() == m_view.hoveredRow())
        painter.fillRect(cell, m_hover);
    painter.fillRect(cell.left(), cell.bottom(), cell.width(), 1, m_line);
    if (isLeftmost(index) && m_view.hasFocus() && index.row() == m_view.currentIndex().row())
        painter.fillRect(cell.left(), cell.top(), FocusBar, cell.height() - 1, m_accent);
}

void LogTableDelegate::paintButton(QPainter &painter, const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const QRect button = buttonRect(option.rect);
    if (m_view.hoveredButtonRow() == index.row()) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_pressed);
        painter.drawRoundedRect(button, 6, 6);
        painter.restore();
    }
    m_deleteImage.paint(&painter, button.adjusted(4, 4, -4, -4));
}

QSize LogTableDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto column = LogColumn(index.column());
    const bool hasImage = column == LogColumn::Operation || column == LogColumn::Status;
    const QString text = m_view.logModel().text(index.row(), column);
    const int width =
        column == LogColumn::Delete
            ? ButtonSide + Padding
            : widthFor(option.fontMetrics.horizontalAdvance(text), hasImage) + (isLeftmost(index) ? Indent : 0);
    return {width, LogTableView::rowHeightFor(option.fontMetrics)};
}

bool LogTableDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                                 const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip)
        return false;
    const auto column = LogColumn(index.column());
    const QString text = m_view.logModel().text(index.row(), column);
    const bool isCut = sizeHint(option, index).width() > option.rect.width();
    if (column == LogColumn::Delete || isCut)
        QToolTip::showText(event->globalPos(), DisplayLine::toolTip(text), view, option.rect);
    else
        QToolTip::hideText();
    return true;
}
