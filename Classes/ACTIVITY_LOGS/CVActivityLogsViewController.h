#pragma once

#include "Classes/ACTIVITY_LOGS/ActivityLogsRole.h"
#include "Classes/ACTIVITY_LOGS/LogArchive.h"
#include "Classes/ACTIVITY_LOGS/LogListPlace.h"
#include "Classes/ACTIVITY_LOGS/LogManager.h"
#include "Classes/ACTIVITY_LOGS/LogMaster.h"
#include "Classes/ACTIVITY_LOGS/LogNode.h"
#include "Classes/ACTIVITY_LOGS/LogPeriods.h"
#include "Classes/ACTIVITY_LOGS/LogSorting.h"
#include "Classes/ACTIVITY_LOGS/LogTextReader.h"
#include "Classes/ACTIVITY_LOGS/OldLogLayout.h"
#include "Platform/Clock.h"
#include "Platform/DispatchQueue.h"
#include "Platform/NotificationCenter.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

class ActivityLogsView;
class QWidget;
class UserDefaults;

/// The logic of the activity logs: which period is read, which of the records are shown and in which order,
/// what is deleted, and which texts the selected record has. It works from the start of the program on, without
/// a window; what a window shows is copied into it. Main thread only.
///
/// Contents: start and window (CVActivityLogsViewController.cpp), periods and archive (+Periods.cpp), the list
/// (+List.cpp), deleting (+Deleting.cpp), texts and saving (+Texts.cpp)
class CVActivityLogsViewController : private LogMaster
{
public:
    /// Offers a choice of folders, the given one first; `chosen` is called unless the user cancels.
    using FolderChooser =
        std::function<void(QWidget *parent, const QString &start, std::function<void(const QString &)> chosen)>;

    struct Surroundings {
        Clock &clock;
        UserDefaults &defaults;
        QString publicWebHost; ///< "https://host[:port]", of the pages of help
        FolderChooser chooseFolder;
    };
    explicit CVActivityLogsViewController(Surroundings surroundings);
    ~CVActivityLogsViewController() override;
    CVActivityLogsViewController(const CVActivityLogsViewController &) = delete;

    /// @name Start and window
    /// @{
    /// The first read, of the past week. Once, when the role is set.
    void viewDidLoad();
    /// Shows its state in that window from now on; null for none. Not owned.
    void setView(ActivityLogsView *view);
    void viewWillAppear(); ///< brings a window that is about to be shown in line
    /// Another account has signed in, or none is any more.
    void userDidChange();
    /// Not owned; set before viewDidLoad() and for as long as this lives.
    ActivityLogsRole *mainController = nullptr;
    /// @}

    /// @name Periods and archive, in CVActivityLogsViewController+Periods.cpp
    /// @{
    /// Reads the period of that tag; another tag does nothing.
    void displayLogs(int tag);
    /// The tag that is stored as the user's choice.
    [[nodiscard]] int logsFrom() const;
    [[nodiscard]] bool showsArchive() const { return m_tag == LogPeriods::Archive; }
    /// The user has chosen an entry of the pop-up.
    void sortLogs(int tag);
    void refreshAction();
    void scrollViewDidScroll(); ///< the end of the list is in view
    void showArchiveLogs();
    /// @}

    /// @name The list, in CVActivityLogsViewController+List.cpp
    /// @{
    void displayLogsView(); ///< sorts and shows what was gathered
    [[nodiscard]] const LogNodes &records() const { return mLogContainer; }
    [[nodiscard]] bool isReading() const { return m_reading != Reading::Nothing; }
    /// @}

    /// @name Deleting, in CVActivityLogsViewController+Deleting.cpp
    /// @{
    void deleteRow(const LogNodePtr &record);
    void deleteSelectedItems();
    void deleteAllItems();
    /// Deletes this user's record of that session log and operation, ordered from the web, once every day was
    /// read. An order that was given before stays.
    void deleteLog(const QString &fromRemote, const QString &operation);
    /// The connection to the daemon was lost: records of jobs that ran are taken out of the day files, once
    /// until daemonDidConnect(), and the list is read anew.
    void daemonDidDisconnect();
    void daemonDidConnect() { removedCalledOnce = false; }
    /// The session logs of the records that were taken out since the last call.
    [[nodiscard]] QStringList takeInProgressOperations();
    /// @}

    /// @name Texts and saving, in CVActivityLogsViewController+Texts.cpp
    /// @{
    void selectedRow(); ///< the selection may have changed
    void archiveSelectedLog();
    void openLog(const LogNodePtr &record);
    void onlineHelp();
    /// @}

private:
    /// What is being read.
    enum class Reading { Nothing, Period, Page, ForDeletion };
    /// A deletion ordered from the web.
    struct WebOrder {
        QString fileName;
        QString optype;
        bool isOfThisRead = false; ///< which will have seen every day
    };

    // LogMaster
    void xmlParsed(const std::optional<LogNodes> &list) override;
    void readEnded(LogReadEnd end) override;
    [[nodiscard]] bool isDeleteFromWeb() const override { return !m_webOrders.empty(); }
    void setDeleteFromWeb(bool ordered) override;

    // Start and window
    void connectView();
    void initLogView();
    void initializers();

    // Periods
    void updatePopUpMenu(int tag);
    void storePeriod(int tag);
    void selectPeriod(int tag);
    void beginRead(Reading what);
    void useStore(LogManager::Logs logs);
    void readPage();
    void refreshPeriods();

    // List
    [[nodiscard]] LogNodes ofThisUser(const LogNodes &list) const;
    void showSoon();
    void sortAndShow();
    void show();
    void applySelectionToTableViewRow();
    [[nodiscard]] LogSorting::SortDescriptor sortDescriptor() const;
    [[nodiscard]] LogSorting::Words words() const;

    // Deleting
    [[nodiscard]] bool isConfirmed(const QString &question) const;
    void remove(const LogNodes &records);
    void deleteNow(const LogNodes &records);
    void leaveOutDeleted();
    void performDeleteAllViewLogs();
    void deleteOrderedFromWeb(const LogNodes &news);
    void deletionEnded(const LogNodes &kept);

    // Texts
    void showPage(const LogPage &page, bool isReread);
    void emptyTexts();
    void saveRows(const std::vector<LogArchive::Row> &rows);
    void saveTo(const QString &folder, const std::vector<LogArchive::Row> &rows);

    Surroundings m_surroundings;
    ActivityLogsView *m_view = nullptr;

    std::unique_ptr<LogManager> LogMgrInst;
    LogManager::Logs m_logs = LogManager::Logs::Current;
    Reading m_reading = Reading::Nothing;
    int m_tag = LogPeriods::Week; ///< of the pop-up
    int m_tagRead = LogPeriods::Week;
    int m_pagesRead = 0;           ///< behind the first days of the read
    int m_pagesToRead = 0;         ///< of a read that takes the place of one with so many
    std::shared_ptr<int> m_choice; ///< the user's last one of a period; what came of another is dropped
    std::optional<int> m_tagAfter; ///< asked for while a deletion from the web reads every day
    QDateTime m_now;               ///< of the read: what a date that can't be read counts as
    std::vector<NotificationCenter::Observation> m_periodObservations;

    LogNodes mLogContainer; ///< the rows, in display order once they are shown
    LogNodePtr selectedNode;
    int selectedRowIndex = 0;
    QString selectedBackupTime;
    bool isRefreshBTnTapped = false;
    bool m_orderHasChanged = false; ///< and the selected row may be out of view
    bool m_isDirty = true;          ///< the window shows something else
    std::unique_ptr<Clock::Timer> m_frameTimer;
    DispatchQueue m_sortQueue{"ActivityLogs.sort"};
    std::shared_ptr<int> m_sortTurn; ///< of the sort that counts; goes with this object

    QString operationFilename; ///< of the newest order from the web
    QString operationType;
    std::vector<WebOrder> m_webOrders;
    NotificationCenter::Observation m_deleteAllSubscription;
    RecordSet m_deletedMeanwhile; ///< until the read has ended that is under way
    bool removedCalledOnce = false;
    QStringList m_inProgressOperations;
    DispatchQueue m_cleanUpQueue{"ActivityLogs.cleanUp"};
    std::stop_source m_cleanUpStop;
    const std::shared_ptr<int> m_alive = std::make_shared<int>(); ///< for what comes late

    LogTextReader m_textReader;
    std::unique_ptr<Clock::Timer> m_textsTimer; ///< runs until old texts go that new ones did not replace
    LogSaving m_saving;
    OldLogSweep m_sweep;
};
