#pragma once

#include "Classes/ACTIVITY_LOGS/LogTableModel.h"
#include "Classes/ACTIVITY_LOGS/LogTabs.h"
#include "Classes/ACTIVITY_LOGS/LogWindowSettings.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class LogTextView;
class QMenu;

namespace Ui
{
class ActivityLogs;
}

/// An entry of the pop-up of periods.
struct LogPeriodEntry {
    int tag = 0;
    QString title;
    friend bool operator==(const LogPeriodEntry &, const LogPeriodEntry &) = default;
};

/// What stands in the place of an empty list.
enum class LogListState { Shown, Reading };

/// The window of the activity logs: a period, the list, and the texts of the selected record. It knows what
/// stands in each outlet and nothing of files. Closing only hides it.
class ActivityLogsView : public QWidget
{
    Q_OBJECT

public:
    ActivityLogsView();
    ~ActivityLogsView() override;

    [[nodiscard]] LogTableModel &model() { return m_model; }
    [[nodiscard]] LogTableView &table();
    [[nodiscard]] LogTextView &textView(LogTab tab);

    void setPeriods(const std::vector<LogPeriodEntry> &periods);
    /// Selects the entry with that tag, which does not count as a choice of the user's.
    void selectPeriod(int tag);

    /// Shows the rows in this order. What was selected and what was in view stays so, as far as it is still
    /// there: false when none of the selected is. `now` is what a date that can't be read is shown as.
    bool showRecords(const LogNodes &records, const QDateTime &now);
    /// Whether an empty list is one that is still being read.
    void setListState(LogListState state);

    /// Gives the list the keyboard, while the window has it.
    void focusList();

    /// Shows these tabs in the panel of sync records or in that of the others; the first is selected.
    enum class TabShown { First, Stays };
    void showTabs(const std::vector<LogTab> &tabs, bool isSync, TabShown shown = TabShown::First);

    /// Takes the look of a light or dark desktop; light until it is called.
    void setDark(bool dark);

    /// How the window stands now, and how it stood the last time.
    [[nodiscard]] LogWindowSettings settings() const;
    void restore(const LogWindowSettings &settings);

    /// @name What the user does; each may be unset
    /// @{
    std::function<void(int tag)> periodChosen;
    std::function<void()> refresh;
    std::function<void()> onlineHelp;
    std::function<void(const LogNodePtr &record)> deleteRow;
    std::function<void()> deleteSelectedItems;
    std::function<void()> deleteAllItems;
    std::function<void()> archiveSelectedLog;
    std::function<void(const LogNodePtr &record)> openLog;
    std::function<void()> selectionChanged; ///< once for all that changed within an event
    std::function<void()> sortChanged;
    std::function<void()> reachedEnd;
    std::function<void()> appears;    ///< before the window is shown
    std::function<void()> stoodAnew;  ///< place, size or columns have changed by the user's hand
    std::function<void()> disappears; ///< the window was closed
    /// @}

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void setFixedTexts();
    void makeShortcuts();
    void makeMenu();
    void connectControls();
    void dress();
    void showPlaceHolder();
    void selectionMayHaveChanged();
    void tellStoodAnew();

    std::unique_ptr<Ui::ActivityLogs> m_ui;
    LogTableModel m_model;
    QMenu *m_menu = nullptr;
    std::vector<LogPeriodEntry> m_periods; ///< in the pop-up
    LogListState m_listState = LogListState::Reading;
    bool m_isDark = false;
    bool m_selectionIsTold = false; ///< a call of selectionChanged is on its way
};
