// Deleting. Records go from the list at once and from their files in the background. A question leaves time for
// another read, so what it was about is found again among the rows that stand then.

#include "Classes/ACTIVITY_LOGS/CVActivityLogsViewController.h"

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"
#include "Classes/ACTIVITY_LOGS/InProgressLogs.h"
#include "Classes/ACTIVITY_LOGS/LogOperations.h"
#include "Platform/MainThread.h"
#include "Platform/StampedFile.h"
#include "Utility/Language/ActivityLogsVC.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/Paths/PathTable.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

/// The answer counts only where the account and the logs are still those that the question was about.
bool CVActivityLogsViewController::isConfirmed(const QString &question) const
{
    if (!mainController)
        return false;
    const auto user = mainController->lastLoggedInUser();
    const LogManager::Logs logs = m_logs;
    const bool isYes = mainController->ask({.text = question,
                                            .defaultButton = SchedulerProgressVC::yesButton,
                                            .alternateButton = SchedulerProgressVC::noButton});
    return isYes && user == mainController->lastLoggedInUser() && logs == m_logs;
}

void CVActivityLogsViewController::deleteRow(const LogNodePtr &record)
{
    if (record && isConfirmed(ActivityLogsVC::deleteRow))
        remove({record});
}

void CVActivityLogsViewController::deleteSelectedItems()
{
    if (!m_view)
        return;
    const LogNodes selected = m_view->table().selectedRecords();
    if (!selected.empty() && isConfirmed(ActivityLogsVC::deleteSeletedItems))
        remove(selected);
}

void CVActivityLogsViewController::remove(const LogNodes &records)
{
    if (isReading()) // which may have seen their files already
        m_deletedMeanwhile.insert(records.begin(), records.end());
    deleteNow(records);
}

/// What was deleted while the list was read anew doesn't come back with it.
void CVActivityLogsViewController::leaveOutDeleted()
{
    const RecordSet gone = std::exchange(m_deletedMeanwhile, {});
    if (!gone.empty())
        std::erase_if(mLogContainer, [&gone](const LogNodePtr &record) { return gone.contains(record); });
}

void CVActivityLogsViewController::deleteNow(const LogNodes &records)
{
    if (records.empty())
        return;
    LogNodes gone = records; // and the same ones that were read since the question
    if (!mLogContainer.empty()) {
        const RecordSet wanted(records.begin(), records.end());
        std::erase_if(mLogContainer, [&](const LogNodePtr &record) {
            const bool isGone = wanted.contains(record);
            if (isGone)
                gone.push_back(record);
            return isGone;
        });
    }
    if (std::exchange(m_sortTurn, nullptr))
        sortAndShow(); // the sort that runs would bring them back
    if (m_view)
        m_view->model().removeRecords(gone);
    LogMgrInst->deleteNodes(records, [this](const LogNodes &kept) { deletionEnded(kept); });
}

/// What could not be taken out of its file is still there, and is shown again.
void CVActivityLogsViewController::deletionEnded(const LogNodes &kept)
{
    for (const LogNodePtr &record : kept)
        m_deletedMeanwhile.erase(record);
    if (!kept.empty() && !isReading())
        displayLogs(m_tag);
}

void CVActivityLogsViewController::deleteAllItems()
{
    const int tag = m_tag;
    // While the list is read anew the rows that the user sees are the window's.
    const LogNodes rows = m_view ? m_view->model().records() : mLogContainer;
    if (!isConfirmed(ActivityLogsVC::deleteAllItems) || tag != m_tag)
        return;
    if (m_tagAfter)
        return; // the period that is named is not yet the one that is read
    if (!LogPeriods::isPaged(tag))
        return remove(rows);
    if (m_view)
        m_view->showRecords({}, m_now);
    const bool isEveryDayRead = m_reading == Reading::ForDeletion; // for an order from the web
    if (!isEveryDayRead)
        beginRead(Reading::ForDeletion);
    m_deleteAllSubscription = NotificationCenter::local().observe(
        u"DeleteAllLogs"_s, [this](const QVariantMap &) { performDeleteAllViewLogs(); });
    if (!isEveryDayRead)
        LogMgrInst->fetchAndDeleteAllLogs();
}

void CVActivityLogsViewController::performDeleteAllViewLogs()
{
    deleteNow(std::exchange(mLogContainer, {}));
}

// Orders from the web

void CVActivityLogsViewController::deleteLog(const QString &fromRemote, const QString &operation)
{
    if (fromRemote.isEmpty())
        return; // it would fit each record without a session log
    m_choice = std::make_shared<int>();
    operationFilename = fromRemote;
    operationType = operation;
    m_webOrders.push_back({fromRemote, LogOperations::getOptypeForOperationName(operation)});
    storePeriod(LogPeriods::Beginning);
    displayLogs(LogPeriods::Beginning);
}

void CVActivityLogsViewController::deleteOrderedFromWeb(const LogNodes &news)
{
    LogNodes ordered;
    std::erase_if(m_webOrders, [&](const WebOrder &order) {
        const auto found = std::find_if(news.rbegin(), news.rend(), [&](const LogNodePtr &record) {
            return record->optype == order.optype && record->logfile.section(u'/', -1) == order.fileName;
        });
        if (found == news.rend())
            return false;
        ordered.push_back(*found);
        return true;
    });
    deleteNow(ordered);
}

void CVActivityLogsViewController::setDeleteFromWeb(bool ordered)
{
    if (ordered)
        return;
    // One that came while the read was under way has days before it, and a read of its own to come.
    std::erase_if(m_webOrders, [](const WebOrder &order) { return order.isOfThisRead; });
    if (m_webOrders.empty()) {
        operationFilename.clear();
        operationType.clear();
    }
}

// Jobs whose daemon went away

void CVActivityLogsViewController::daemonDidDisconnect()
{
    if (std::exchange(removedCalledOnce, true))
        return;
    m_cleanUpQueue.async([folder = pathValue("LogsDumpPath"_L1, {}), lostAt = fileClockNow(),
                          stop = m_cleanUpStop.get_token(), home = std::weak_ptr<int>(m_alive), this] {
        const QStringList removed = InProgressLogs::removeInProgressLogsFromXML(folder, lostAt, stop);
        onMainThread([this, home, removed] {
            if (home.expired())
                return;
            m_inProgressOperations += removed;
            if (!removed.isEmpty() && mainController)
                mainController->inProgressLogsWereRemoved();
            displayLogs(m_tag);
        });
    });
}

QStringList CVActivityLogsViewController::takeInProgressOperations()
{
    return std::exchange(m_inProgressOperations, {});
}
