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

bool CVActivityLogsViewController::isConfirmed(const QString &question) const
{
    return mainController && mainController->ask({.text = question,
                                                  .defaultButton = SchedulerProgressVC::yesButton,
                                                  .alternateButton = SchedulerProgressVC::noButton});
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
    if (m_view)
        m_view->model().removeRecords(records);
    if (isReading()) {
        m_awaitingDeletion.insert(records.begin(), records.end());
        return;
    }
    const RecordSet wanted(records.begin(), records.end());
    LogNodes gone;
    std::copy_if(mLogContainer.begin(), mLogContainer.end(), std::back_inserter(gone),
                 [&wanted](const LogNodePtr &record) { return wanted.contains(record); });
    deleteNow(gone);
}

/// What was deleted while the list was read anew.
void CVActivityLogsViewController::deleteAwaited()
{
    const RecordSet wanted = std::exchange(m_awaitingDeletion, {});
    if (!wanted.empty())
        remove(LogNodes(wanted.begin(), wanted.end()));
}

/// `records` are of the list.
void CVActivityLogsViewController::deleteNow(const LogNodes &records)
{
    if (records.empty())
        return;
    const std::unordered_set<LogNodePtr> gone(records.begin(), records.end());
    std::erase_if(mLogContainer, [&gone](const LogNodePtr &record) { return gone.contains(record); });
    if (std::exchange(m_sortTurn, nullptr))
        sortAndShow(); // the sort that runs would bring them back
    if (m_view)
        m_view->model().removeRecords(records);
    LogMgrInst->deleteNodes(records, [this](const LogNodes &kept) { deletionEnded(kept); });
}

/// What could not be taken out of its file is still there, and is shown again.
void CVActivityLogsViewController::deletionEnded(const LogNodes &kept)
{
    if (!kept.empty() && !isReading())
        displayLogs(m_tag);
}

void CVActivityLogsViewController::deleteAllItems()
{
    if (!isConfirmed(ActivityLogsVC::deleteAllItems))
        return;
    if (!LogPeriods::isPaged(m_tag))
        return performDeleteAllViewLogs();
    if (m_reading == Reading::ForDeletion)
        return;
    beginRead(Reading::ForDeletion);
    if (m_view)
        m_view->showRecords({}, m_now);
    m_deleteAllSubscription = NotificationCenter::local().observe(
        u"DeleteAllLogs"_s, [this](const QVariantMap &) { performDeleteAllViewLogs(); });
    LogMgrInst->fetchAndDeleteAllLogs();
}

void CVActivityLogsViewController::performDeleteAllViewLogs()
{
    // While the list is read anew the rows that the user saw are the window's.
    const LogNodes all = isReading() && m_view ? m_view->model().records() : mLogContainer;
    remove(all);
}

// Orders from the web

void CVActivityLogsViewController::deleteLog(const QString &fromRemote, const QString &operation)
{
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
