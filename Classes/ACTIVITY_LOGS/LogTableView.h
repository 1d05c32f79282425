#pragma once

#include "Classes/ACTIVITY_LOGS/LogTableModel.h"

#include <QElapsedTimer>
#include <QTableView>

#include <functional>
#include <optional>
#include <vector>

class LogTableDelegate;

/// A column as the user has put it.
struct LogColumnWidth {
    LogColumn column = LogColumn::Operation;
    int width = 0; ///< pixels
    friend bool operator==(const LogColumnWidth &, const LogColumnWidth &) = default;
};

/// The list of records: whole rows are selected, the keyboard does all that the mouse does, and on the
/// accessibility bus each row ends in a button.
class LogTableView : public QTableView
{
    Q_OBJECT

public:
    explicit LogTableView(QWidget *parent = nullptr);

    /// Shows that model's records; it outlives the view.
    void setLogModel(LogTableModel &model);
    [[nodiscard]] const LogTableModel &logModel() const { return *m_model; }
    void setDark(bool dark);

    /// @name What the user does; each may be unset. They are told once the event that led there is over.
    /// @{
    std::function<void(const LogNodePtr &record)> deleteButtonPressed;
    std::function<void()> deletePressed;                          ///< the key, for what is selected
    std::function<void(const LogNodePtr &record)> opened;         ///< Return, or a double click
    std::function<void(const QPoint &globalPlace)> menuRequested; ///< on a row, which is selected by then
    std::function<void()> sortChanged;
    std::function<void()> reachedEnd;     ///< the last row is in view, or the End key was pressed
    std::function<void()> columnsChanged; ///< widths or order, by the user's hand
    /// @}

    /// @name Selection
    /// @{
    [[nodiscard]] LogNodes selectedRecords() const; ///< in the order shown
    [[nodiscard]] LogNodePtr currentRecord() const; ///< the selected one that the keyboard is at; may be null
    /// `current` is the row that the keyboard is at then; -1 leaves it where it is.
    void selectRows(const std::vector<int> &rows, int current);
    /// Has the scroll bar know of the rows that have come.
    void executeDelayedLayout() { executeDelayedItemsLayout(); }
    /// @}

    /// @name Order
    /// @{
    [[nodiscard]] LogColumn sortColumn() const;
    [[nodiscard]] Qt::SortOrder sortOrder() const;
    /// @}

    /// @name Columns
    /// @{
    [[nodiscard]] std::vector<LogColumnWidth> columns() const;
    /// Puts the columns in that order with those widths; what is missing or of no use is left as it is.
    void setColumns(const std::vector<LogColumnWidth> &columns);
    /// Each column as wide as its title and its usual content need, the first one as what is left.
    void setUsualColumns();
    /// @}

    [[nodiscard]] int hoveredRow() const { return m_hoveredRow; }             ///< -1 for none
    [[nodiscard]] int hoveredButtonRow() const { return m_hoveredButtonRow; } ///< -1 for none
    [[nodiscard]] static int rowHeightFor(const QFontMetrics &metrics);

    /// Asks for the deletion of that row, as its button does. For the accessibility bus.
    void pressDeleteButton(int row);
    /// Sorts by that column, or turns its order around.
    void sortBy(LogColumn column);

    void keyboardSearch(const QString &search) override;
    void reset() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void updateGeometries() override;

private:
    void takeFont();
    void fitColumns(int before, int now);
    void setHovered(const QPoint &place);
    void updateRow(int row);
    [[nodiscard]] int buttonRowAt(const QPoint &place) const;
    void lookForEnd();

    /// What the list is sorted by.
    struct Sort {
        int section = int(LogColumn::DateTime);
        Qt::SortOrder order = Qt::DescendingOrder;
        friend bool operator==(const Sort &, const Sort &) = default;
    };

    LogTableModel *m_model = nullptr;
    Sort m_sort;
    LogTableDelegate *m_delegate = nullptr;
    int m_hoveredRow = -1;
    int m_hoveredButtonRow = -1;
    int m_pressedButtonRow = -1;
    bool m_isFitting = false; ///< the program changes widths, not the user
    bool m_endIsTold = false;
    QString m_typed; ///< what is looked for, as far as it is typed
    QElapsedTimer m_sinceTyped;
};
