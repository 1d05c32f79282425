#include "Classes/ACTIVITY_LOGS/LogTableView.h"

#include "Classes/ACTIVITY_LOGS/LogTableAccessible.h"
#include "Classes/ACTIVITY_LOGS/LogTableDelegate.h"
#include "Utility/Language/ActivityLogsVC.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int AroundText = 18;      ///< above and below the text of a row, together
constexpr int SmallestColumn = 48;  ///< pixels
constexpr int SmallestFirst = 140;  ///< the first column gives way to a smaller window down to this
constexpr int LargestColumn = 4000; ///< that a stored setting may ask for

/// As wide as what usually stands in a column.
const QString &usualText(LogColumn column)
{
    static const QString date = u"00-00-0000 00:00:00"_s, duration = u"000:00:00"_s, files = u"0,000,000"_s;
    static const QString none;
    switch (column) {
    case LogColumn::DateTime:
        return date;
    case LogColumn::Duration:
        return duration;
    case LogColumn::Status: {
        const auto &longer = std::max<const QString &>(ActivityLogsVC::inProgress, ActivityLogsVC::cancelled,
                                                       [](auto &a, auto &b) { return a.size() < b.size(); });
        return longer;
    }
    case LogColumn::Files:
        return files;
    default:
        return none;
    }
}
} // namespace

LogTableView::LogTableView(QWidget *parent) : QTableView(parent), m_delegate(new LogTableDelegate(*this))
{
    makeLogTablesAccessible();
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setWordWrap(false);
    setFrameShape(QFrame::NoFrame);
    viewport()->setMouseTracking(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setItemDelegate(m_delegate);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &LogTableView::lookForEnd);
}

void LogTableView::setLogModel(LogTableModel &model)
{
    m_model = &model;
    setModel(&model);
    QHeaderView *header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setMinimumSectionSize(SmallestColumn);
    header->setSortIndicatorShown(true);
    header->setSortIndicator(m_sort.section, m_sort.order);
    header->setSectionResizeMode(int(LogColumn::Delete), QHeaderView::Fixed);
    connect(header, &QHeaderView::sortIndicatorChanged, this, [this, header](int section, Qt::SortOrder order) {
        // There is nothing to sort by a button.
        if (section == int(LogColumn::Delete))
            return header->setSortIndicator(m_sort.section, m_sort.order);
        const Sort now{section, order};
        if (std::exchange(m_sort, now) != now && sortChanged)
            sortChanged();
    });
    const auto byUser = [this] {
        if (!m_isFitting && columnsChanged)
            columnsChanged();
    };
    connect(header, &QHeaderView::sectionResized, this, byUser);
    connect(header, &QHeaderView::sectionMoved, this, byUser);
    takeFont();
    setUsualColumns();
}

void LogTableView::setDark(bool dark)
{
    m_model->setDark(dark);
    m_delegate->setDark(dark);
    viewport()->update();
}

int LogTableView::rowHeightFor(const QFontMetrics &metrics)
{
    return metrics.height() + AroundText;
}

void LogTableView::takeFont()
{
    verticalHeader()->setDefaultSectionSize(rowHeightFor(fontMetrics()));
    verticalScrollBar()->setSingleStep(rowHeightFor(fontMetrics()));
}

// Selection

LogNodes LogTableView::selectedRecords() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    LogNodes records;
    records.reserve(rows.size());
    for (const int row : rows)
        records.push_back(m_model->record(row));
    return records;
}

LogNodePtr LogTableView::currentRecord() const
{
    const QItemSelectionModel *selection = selectionModel();
    if (!selection->hasSelection())
        return nullptr;
    const QModelIndex current = currentIndex();
    if (current.isValid() && selection->isSelected(current))
        return m_model->record(current.row());
    return m_model->record(selection->selection().first().top());
}

void LogTableView::selectRows(const std::vector<int> &rows, int current)
{
    QItemSelection selection;
    // Neighbours become one range: who selected all must not wait for thousands of them.
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t next = i + 1;
        while (next < rows.size() && rows[next] == rows[next - 1] + 1)
            ++next;
        selection.append({m_model->index(rows[i], 0), m_model->index(rows[next - 1], LogColumns - 1)});
        i = next;
    }
    if (current >= 0)
        selectionModel()->setCurrentIndex(m_model->index(current, 0), QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

// Order

LogColumn LogTableView::sortColumn() const
{
    return LogColumn(horizontalHeader()->sortIndicatorSection());
}

Qt::SortOrder LogTableView::sortOrder() const
{
    return horizontalHeader()->sortIndicatorOrder();
}

void LogTableView::sortBy(LogColumn column)
{
    const bool turns = sortColumn() == column && sortOrder() == Qt::AscendingOrder;
    horizontalHeader()->setSortIndicator(int(column), turns ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// Columns

std::vector<LogColumnWidth> LogTableView::columns() const
{
    std::vector<LogColumnWidth> columns;
    for (int place = 0; place < LogColumns; ++place) {
        const int column = horizontalHeader()->logicalIndex(place);
        columns.push_back({LogColumn(column), horizontalHeader()->sectionSize(column)});
    }
    return columns;
}

void LogTableView::setColumns(const std::vector<LogColumnWidth> &columns)
{
    const QScopedValueRollback fitting(m_isFitting, true);
    int place = 0;
    for (const LogColumnWidth &column : columns) {
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(int(column.column)), place++);
        if (column.column != LogColumn::Delete && column.width > 0)
            horizontalHeader()->resizeSection(int(column.column),
                                              std::clamp(column.width, SmallestColumn, LargestColumn));
    }
}

void LogTableView::setUsualColumns()
{
    const QScopedValueRollback fitting(m_isFitting, true);
    horizontalHeader()->ensurePolished(); // it has its font only then
    int others = 0;
    for (int column = LogColumns - 1; column > 0; --column) {
        const auto which = LogColumn(column);
        const int content = LogTableDelegate::widthFor(fontMetrics().horizontalAdvance(usualText(which)),
                                                       which == LogColumn::Status);
        const int heading = horizontalHeader()->sectionSizeHint(column);
        const int width = which == LogColumn::Delete ? SmallestColumn : std::max(content, heading);
        horizontalHeader()->resizeSection(column, width);
        others += width;
    }
    horizontalHeader()->resizeSection(int(LogColumn::Operation),
                                      std::max(SmallestFirst, viewport()->width() - others));
}

/// The first column takes what a wider window gives and gives what a smaller one takes, as long as the columns
/// fill the width; once the user has made them wider than that they stay as they are.
void LogTableView::fitColumns(int before, int now)
{
    const QHeaderView *header = horizontalHeader();
    if (header->length() > std::max(before, now))
        return;
    const QScopedValueRollback fitting(m_isFitting, true);
    const int first = header->sectionSize(int(LogColumn::Operation));
    horizontalHeader()->resizeSection(int(LogColumn::Operation),
                                      std::max(SmallestFirst, first + now - header->length()));
}

void LogTableView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    if (m_model)
        fitColumns(event->oldSize().width(), event->size().width());
}

void LogTableView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (m_model && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        takeFont();
}

// Keys

void LogTableView::keyPressEvent(QKeyEvent *event)
{
    const bool isMenu = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (isMenu) {
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
        contextMenuEvent(&menu);
    } else if (event->matches(QKeySequence::Delete)) {
        if (deletePressed && selectionModel()->hasSelection())
            deletePressed();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (const LogNodePtr record = currentRecord(); record && opened)
            opened(record);
    } else {
        QTableView::keyPressEvent(event);
    }
}

QModelIndex LogTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int column = std::max(0, currentIndex().column());
    if (action == MoveHome)
        return m_model->index(0, column);
    if (action != MoveEnd)
        return QTableView::moveCursor(action, modifiers);
    if (reachedEnd)
        reachedEnd();
    return m_model->index(m_model->rowCount() - 1, column);
}

void LogTableView::keyboardSearch(const QString &search)
{
    if (m_model->rowCount() == 0)
        return;
    if (!m_sinceTyped.isValid() || m_sinceTyped.elapsed() > QApplication::keyboardInputInterval())
        m_typed.clear();
    m_sinceTyped.start();
    // The first letter goes on to the next row, further ones stay where they still fit.
    const int first = currentIndex().row() + (m_typed.isEmpty() ? 1 : 0);
    m_typed += search;
    if (const int row = m_model->find(m_typed, first); row >= 0)
        selectionModel()->setCurrentIndex(m_model->index(row, std::max(0, currentIndex().column())),
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

// Mouse

int LogTableView::buttonRowAt(const QPoint &place) const
{
    const QModelIndex index = indexAt(place);
    const bool isOn = index.isValid() && index.column() == int(LogColumn::Delete) &&
                      LogTableDelegate::buttonRect(visualRect(index)).contains(place);
    return isOn ? index.row() : -1;
}

void LogTableView::mousePressEvent(QMouseEvent *event)
{
    m_pressedButtonRow = event->button() == Qt::LeftButton ? buttonRowAt(event->position().toPoint()) : -1;
    // The button is no part of the row: what is selected stays so.
    if (m_pressedButtonRow < 0)
        QTableView::mousePressEvent(event);
}

void LogTableView::mouseMoveEvent(QMouseEvent *event)
{
    setHovered(event->position().toPoint());
    if (m_pressedButtonRow < 0)
        QTableView::mouseMoveEvent(event);
}

void LogTableView::mouseReleaseEvent(QMouseEvent *event)
{
    const int pressed = std::exchange(m_pressedButtonRow, -1);
    if (pressed < 0)
        return QTableView::mouseReleaseEvent(event);
    if (buttonRowAt(event->position().toPoint()) == pressed)
        pressDeleteButton(pressed);
}

void LogTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QPoint place = event->position().toPoint();
    if (event->button() != Qt::LeftButton || buttonRowAt(place) >= 0)
        return mousePressEvent(event);
    QTableView::mouseDoubleClickEvent(event);
    if (const LogNodePtr record = m_model->record(indexAt(place).row()); record && opened)
        opened(record);
}

void LogTableView::leaveEvent(QEvent *event)
{
    QTableView::leaveEvent(event);
    setHovered({-1, -1});
}

void LogTableView::setHovered(const QPoint &place)
{
    const int row = place.x() < 0 ? -1 : rowAt(place.y());
    const int buttonRow = place.x() < 0 ? -1 : buttonRowAt(place);
    const int rowBefore = std::exchange(m_hoveredRow, row);
    const int buttonBefore = std::exchange(m_hoveredButtonRow, buttonRow);
    if (rowBefore == row && buttonBefore == buttonRow)
        return;
    updateRow(rowBefore);
    updateRow(row);
}

void LogTableView::updateRow(int row)
{
    if (row >= 0 && row < m_model->rowCount())
        viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
}

void LogTableView::pressDeleteButton(int row)
{
    // Later: a question opens a loop of its own, and whoever pressed waits for an answer to the press.
    const LogNodePtr record = m_model->record(row);
    if (record)
        QMetaObject::invokeMethod(
            this,
            [this, record] {
                if (deleteButtonPressed)
                    deleteButtonPressed(record);
            },
            Qt::QueuedConnection);
}

void LogTableView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid() || !menuRequested)
        return;
    if (byKey)
        scrollTo(index);
    const QItemSelectionModel *selection = selectionModel();
    if (!selection->isRowSelected(index.row()) && selection->selectedRows().size() <= 1)
        selectRows({index.row()}, index.row());
    menuRequested(byKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

// The end of the list

void LogTableView::updateGeometries()
{
    QTableView::updateGeometries();
    lookForEnd();
}

/// Also a list that doesn't fill the window is at its end.
void LogTableView::lookForEnd()
{
    if (m_endIsTold || verticalScrollBar()->value() < verticalScrollBar()->maximum())
        return;
    m_endIsTold = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_endIsTold = false;
            const bool isAtEnd = verticalScrollBar()->value() >= verticalScrollBar()->maximum();
            if (isAtEnd && isVisible() && !window()->isMinimized() && reachedEnd)
                reachedEnd();
        },
        Qt::QueuedConnection);
}

void LogTableView::reset()
{
    m_hoveredRow = m_hoveredButtonRow = m_pressedButtonRow = -1;
    QTableView::reset();
}

// What a screen reader is told. The table's own words would count a header for the rows, which there is none.

void LogTableView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QAbstractItemView::currentChanged(current, previous); // NOLINT(bugprone-parent-virtual-call)
    updateRow(previous.row());
    updateRow(current.row());
    if (QAccessible::isActive() && current.isValid() && hasFocus()) {
        QAccessibleEvent focus(this, QAccessible::Focus);
        focus.setChild(accessibleChildOf(current));
        QAccessible::updateAccessibility(&focus);
    }
}

void LogTableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected); // NOLINT(bugprone-parent-virtual-call)
    if (QAccessible::isActive()) {
        QAccessibleEvent within(this, QAccessible::SelectionWithin);
        QAccessible::updateAccessibility(&within);
    }
}
