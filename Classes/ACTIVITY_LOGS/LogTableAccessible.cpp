// The list on the accessibility bus. A cell is made when somebody asks for it and stands for a place of the
// list; when the rows change all are dropped, so that nobody presses the button of another record.

#include "Classes/ACTIVITY_LOGS/LogTableAccessible.h"

#include "Classes/ACTIVITY_LOGS/LogTableView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QHeaderView>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace
{
/// The child of a table with that number: a title where `row` is -1.
class LogCell : public QAccessibleInterface,
                public QAccessibleTableCellInterface,
                public QAccessibleActionInterface
{
public:
    LogCell(LogTableView &view, int row, int column) : m_view(&view), m_row(row), m_column(column) {}

    // QAccessibleInterface
    bool isValid() const override { return m_view && m_row < m_view->logModel().rowCount(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return isValid() ? m_view->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(m_view); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    // QAccessibleTableCellInterface
    bool isSelected() const override
    {
        return isRecord() && isValid() && m_view->selectionModel()->isRowSelected(m_row);
    }
    QList<QAccessibleInterface *> columnHeaderCells() const override;
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

    // QAccessibleActionInterface
    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    bool isRecord() const { return m_row >= 0; }
    bool isButton() const { return isRecord() && m_column == int(LogColumn::Delete); }
    QModelIndex index() const { return m_view->logModel().index(m_row, m_column); }

    QPointer<LogTableView> m_view;
    int m_row;
    int m_column;
};

QString LogCell::text(QAccessible::Text kind) const
{
    if (!isValid())
        return {};
    const LogTableModel &model = m_view->logModel();
    if (!isRecord())
        return kind == QAccessible::Name
                   ? model.headerData(m_column, Qt::Horizontal, Qt::DisplayRole).toString()
                   : QString();
    if (kind == QAccessible::Name)
        return model.text(m_row, LogColumn(m_column));
    // Buttons of one name are told apart by what they belong to.
    if (kind == QAccessible::Description && isButton())
        return model.text(m_row, LogColumn::Operation) + u", "_s + model.text(m_row, LogColumn::DateTime);
    return {};
}

QRect LogCell::rect() const
{
    if (!isValid())
        return {};
    QRect place;
    const QWidget *ground = nullptr;
    if (isRecord()) {
        place = m_view->visualRect(index());
        ground = m_view->viewport();
    } else {
        const QHeaderView *header = m_view->horizontalHeader();
        place = {header->sectionViewportPosition(m_column), 0, header->sectionSize(m_column), header->height()};
        ground = header->viewport();
    }
    return {ground->mapToGlobal(place.topLeft()), place.size()};
}

QAccessible::Role LogCell::role() const
{
    if (!isRecord())
        return QAccessible::ColumnHeader;
    return isButton() ? QAccessible::PushButton : QAccessible::Cell;
}

QAccessible::State LogCell::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const QRect inView(m_view->mapToGlobal(QPoint()), m_view->size());
    state.invisible = !m_view->isVisible() || !inView.intersects(rect());
    if (isRecord()) {
        state.selectable = true;
        state.multiSelectable = true;
        state.focusable = true;
        state.selected = isSelected();
        state.focused = m_view->hasFocus() && m_view->currentIndex() == index();
    }
    return state;
}

void *LogCell::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableCellInterface && isRecord())
        return static_cast<QAccessibleTableCellInterface *>(this);
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return nullptr;
}

QList<QAccessibleInterface *> LogCell::columnHeaderCells() const
{
    return {parent()->child(m_column)};
}

QStringList LogCell::actionNames() const
{
    if (!isValid() || (!isRecord() && m_column == int(LogColumn::Delete)))
        return {};
    return {isRecord() && !isButton() ? setFocusAction() : pressAction()};
}

void LogCell::doAction(const QString &name)
{
    if (!actionNames().contains(name))
        return;
    if (isButton())
        m_view->pressDeleteButton(m_row);
    else if (isRecord())
        m_view->setCurrentIndex(index());
    else
        m_view->sortBy(LogColumn(m_column));
}

class LogTableAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit LogTableAccessible(LogTableView *view) : QAccessibleWidget(view, QAccessible::Table) {}
    ~LogTableAccessible() override { dropCells(); }

    // QAccessibleInterface
    int childCount() const override { return (rowCount() + 1) * LogColumns; }
    QAccessibleInterface *child(int number) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    // QAccessibleTableInterface
    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override;
    int selectedCellCount() const override { return selectedRowCount() * LogColumns; }
    QList<QAccessibleInterface *> selectedCells() const override;
    QString columnDescription(int column) const override
    {
        return model().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return int(selectedRows().size()); }
    int columnCount() const override { return LogColumns; }
    int rowCount() const override { return view() ? model().rowCount() : 0; }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override { return view()->selectionModel()->isRowSelected(row); }
    bool selectRow(int row) override { return select(row, QItemSelectionModel::Select); }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int row) override { return select(row, QItemSelectionModel::Deselect); }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *event) override;

private:
    LogTableView *view() const { return static_cast<LogTableView *>(widget()); }
    const LogTableModel &model() const { return view()->logModel(); }
    bool select(int row, QItemSelectionModel::SelectionFlag how);
    void dropCells();

    mutable QHash<int, QAccessible::Id> m_cells; ///< by their numbers
};

QAccessibleInterface *LogTableAccessible::child(int number) const
{
    if (number < 0 || number >= childCount())
        return nullptr;
    if (const auto known = m_cells.constFind(number); known != m_cells.constEnd())
        return QAccessible::accessibleInterface(*known);
    auto *cell = new LogCell(*view(), number / LogColumns - 1, number % LogColumns);
    m_cells.insert(number, QAccessible::registerAccessibleInterface(cell));
    return cell;
}

QAccessibleInterface *LogTableAccessible::cellAt(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= LogColumns)
        return nullptr;
    return child((row + 1) * LogColumns + column);
}

QAccessibleInterface *LogTableAccessible::childAt(int x, int y) const
{
    const QModelIndex index = view()->indexAt(view()->viewport()->mapFromGlobal(QPoint(x, y)));
    return index.isValid() ? cellAt(index.row(), index.column()) : nullptr;
}

QAccessibleInterface *LogTableAccessible::focusChild() const
{
    const QModelIndex current = view()->currentIndex();
    return current.isValid() ? cellAt(current.row(), current.column()) : nullptr;
}

int LogTableAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *cell = dynamic_cast<const LogCell *>(child);
    return cell && cell->parent() == this ? (cell->rowIndex() + 1) * LogColumns + cell->columnIndex() : -1;
}

void *LogTableAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QList<QAccessibleInterface *> LogTableAccessible::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < LogColumns; ++column)
            cells.append(cellAt(row, column));
    }
    return cells;
}

QList<int> LogTableAccessible::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : view()->selectionModel()->selectedRows())
        rows.append(index.row());
    return rows;
}

bool LogTableAccessible::select(int row, QItemSelectionModel::SelectionFlag how)
{
    if (row < 0 || row >= rowCount())
        return false;
    const QModelIndex index = model().index(row, 0);
    if (how == QItemSelectionModel::Select)
        view()->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    view()->selectionModel()->select(index, how | QItemSelectionModel::Rows);
    return true;
}

void LogTableAccessible::modelChange(QAccessibleTableModelChangeEvent *event)
{
    if (event->modelChangeType() != QAccessibleTableModelChangeEvent::DataChanged)
        dropCells();
}

void LogTableAccessible::dropCells()
{
    for (const QAccessible::Id cell : std::exchange(m_cells, {}))
        QAccessible::deleteAccessibleInterface(cell);
}

QAccessibleInterface *accessibleOf(const QString &, QObject *object)
{
    auto *view = qobject_cast<LogTableView *>(object);
    return view ? new LogTableAccessible(view) : nullptr;
}
} // namespace

void makeLogTablesAccessible()
{
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(accessibleOf);
        return true;
    }();
}

int accessibleChildOf(const QModelIndex &index)
{
    return (index.row() + 1) * LogColumns + index.column();
}
