// Periods and archive. Whatever chooses a period comes to displayLogs(), and each call of it is a new read:
// what the one before had still to hand over is dropped by the store, and what was to happen at its end
// doesn't.

#include "Classes/ACTIVITY_LOGS/CVActivityLogsViewController.h"

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"
#include "Platform/UserDefaults.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Language/ActivityLogsVC.h"
#include "Utility/Paths/PathTable.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
const QString PeriodKey = u"logsFrom"_s;
}

int CVActivityLogsViewController::logsFrom() const
{
    const int tag = m_surroundings.defaults.value(PeriodKey).toInt();
    const bool isOne = LogPeriods::firstDay(tag, m_now.date()) || tag == LogPeriods::Beginning;
    return isOne ? tag : LogPeriods::Week;
}

void CVActivityLogsViewController::storePeriod(int tag)
{
    UserDefaults &defaults = m_surroundings.defaults;
    defaults.setValue(PeriodKey, tag);
    traceFailure(defaults.path(), defaults.synchronize());
}

void CVActivityLogsViewController::selectPeriod(int tag)
{
    m_tag = tag;
    if (m_view)
        m_view->selectPeriod(tag);
}

void CVActivityLogsViewController::sortLogs(int tag)
{
    if (tag == LogPeriods::Archive)
        return showArchiveLogs();
    for (const LogPeriods::Period &period : LogPeriods::all()) {
        if (period.tag == tag)
            NotificationCenter::local().post(pathValue(period.key));
    }
}

void CVActivityLogsViewController::updatePopUpMenu(int tag)
{
    m_choice = std::make_shared<int>();
    storePeriod(tag);
    displayLogs(tag);
}

void CVActivityLogsViewController::displayLogs(int tag)
{
    const auto firstDay = LogPeriods::firstDay(tag, m_surroundings.clock.now().date());
    if (!firstDay && !LogPeriods::isPaged(tag))
        return;
    selectPeriod(tag);
    if (m_reading == Reading::ForDeletion) {
        m_tagAfter = tag; // what was ordered to be deleted is not forgotten by looking elsewhere
        return;
    }
    useStore(tag == LogPeriods::Archive ? LogManager::Logs::Archived : LogManager::Logs::Current);
    m_pagesToRead = tag == m_tagRead ? m_pagesRead : 0; // the rows that the user has scrolled to stay
    m_tagRead = tag;
    beginRead(isDeleteFromWeb() ? Reading::ForDeletion : Reading::Period);
    if (firstDay && !isDeleteFromWeb())
        LogMgrInst->fetchLogs(*firstDay, m_now.date());
    else
        LogMgrInst->fetchAllLogs();
}

void CVActivityLogsViewController::beginRead(Reading what)
{
    m_reading = what;
    m_pagesRead = 0;
    m_sortTurn.reset(); // it would bring back what the read takes away
    m_now = m_surroundings.clock.now();
    m_deleteAllSubscription.reset();
    m_frameTimer.reset();
    mLogContainer.clear();
    for (WebOrder &order : m_webOrders)
        order.isOfThisRead = true;
    if (m_view)
        m_view->setListState(LogListState::Reading);
}

void CVActivityLogsViewController::useStore(LogManager::Logs logs)
{
    if (LogMgrInst && m_logs == logs)
        return;
    m_logs = logs;
    LogMaster &master = *this;
    LogMgrInst = std::make_unique<LogManager>(master, m_surroundings.clock, logs);
}

void CVActivityLogsViewController::refreshAction()
{
    selectedRowIndex = 0;
    selectedBackupTime.clear();
    isRefreshBTnTapped = true;
    displayLogs(m_tag);
}

void CVActivityLogsViewController::scrollViewDidScroll()
{
    if (isReading() || !LogPeriods::isPaged(m_tag) || !LogMgrInst || LogMgrInst->unparsedLogs.empty())
        return;
    readPage();
}

void CVActivityLogsViewController::readPage()
{
    m_reading = Reading::Page;
    ++m_pagesRead;
    LogMgrInst->fetchLogsForPage(++LogMgrInst->currentPage);
}

// Archive

void CVActivityLogsViewController::showArchiveLogs()
{
    if (!OldLogLayout::isOldSessionLogsFolderExist()) {
        refreshPeriods();
        return selectPeriod(m_tag);
    }
    m_choice = std::make_shared<int>();
    m_sweep.start(pathValue("SessionLogsFolderPath"_L1, {}),
                  [this, choice = std::weak_ptr<int>(m_choice)](const OldLogLayout::Swept &) {
                      if (choice.expired())
                          return; // the user has chosen something else since
                      if (m_reading == Reading::ForDeletion)
                          return displayLogs(LogPeriods::Archive); // waits for the end of that read
                      // A store of its own each time: what the last one kept of the files may be old.
                      LogMgrInst.reset();
                      displayLogs(LogPeriods::Archive);
                      initializers();
                  });
}

void CVActivityLogsViewController::refreshPeriods()
{
    if (!m_view)
        return;
    std::vector<LogPeriodEntry> entries;
    for (const LogPeriods::Period &period : LogPeriods::all())
        entries.push_back({period.tag, period.title});
    if (m_tag == LogPeriods::Archive || OldLogLayout::isOldSessionLogsFolderExist())
        entries.push_back({LogPeriods::Archive, ActivityLogsVC::archivedLogs});
    m_view->setPeriods(entries);
    m_view->selectPeriod(m_tag);
}
