#pragma once

#include <QAbstractItemDelegate>
#include <QColor>

#include <array>

#include "Classes/ACTIVITY_LOGS/LogStatusLook.h"

class LogTableModel;
class LogTableView;

/// Paints the cells of the list, and the button that each row has without a widget of its own. It asks the
/// model for what it needs by name, since a frame of the list is a hundred cells.
class LogTableDelegate : public QAbstractItemDelegate
{
    Q_OBJECT

public:
    explicit LogTableDelegate(LogTableView &view);

    /// Takes the colours of a light or dark desktop.
    void setDark(bool dark);

    /// Where the button of a row's delete cell is, within that cell.
    [[nodiscard]] static QRect buttonRect(const QRect &cell);
    /// How wide a cell must be for a text of that width.
    [[nodiscard]] static int widthFor(int textWidth, bool hasImage);
    /// What the leftmost cell of a row keeps free besides, so that it stands below the window's other texts.
    static constexpr int Indent = 12;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    [[nodiscard]] bool isLeftmost(const QModelIndex &index) const;
    void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintButton(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;

    LogTableView &m_view;
    QIcon m_deleteImage;
    QColor m_text, m_line, m_selection, m_hover, m_accent, m_pressed;
    std::array<QColor, LogStates> m_stateColours;
};
