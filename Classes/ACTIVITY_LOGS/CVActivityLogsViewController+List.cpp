// The list. Records are gathered in the order in which they come and sorted when they are shown. What stands in
// the window stays there until a read has ended; a window without rows fills while it reads, at most once a
// frame. A long list is sorted elsewhere, so that the window goes on meanwhile.

#include "Classes/ACTIVITY_LOGS/CVActivityLogsViewController.h"

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"
#include "Classes/ACTIVITY_LOGS/LogOperations.h"
#include "Platform/MainThread.h"
#include "Source/Logger/CVLogger.h"
#include "Source/Logger/InterfaceTraceWriters.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/LanguageManager.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// As many as are sorted within a small part of a frame.
constexpr std::size_t SortedAtOnce = 2000;
constexpr Clock::Duration Frame{16};
const QString DeleteAllLogs = u"DeleteAllLogs"_s;

void trace(const QString &line)
{
    CVTraceFileLogger::shared().logAppInterfaceTrace(line, false);
}
} // namespace

LogNodes CVActivityLogsViewController::ofThisUser(const LogNodes &list) const
{
    const QString user = mainController ? mainController->lastLoggedInUser().value_or(QString()) : QString();
    LogNodes kept;
    kept.reserve(list.size());
    std::copy_if(list.begin(), list.end(), std::back_inserter(kept), [&user](const LogNodePtr &record) {
        return record->uname.isEmpty() || record->uname == user;
    });
    return kept;
}

void CVActivityLogsViewController::xmlParsed(const std::optional<LogNodes> &list)
{
    LogManager &store = *LogMgrInst;
    ++store.currentParseCount;
    const LogNodes kept = ofThisUser(list.value_or(LogNodes()));
    if (kept.empty())
        return showSoon();
    m_sortTurn.reset(); // it knows nothing of these
    mLogContainer.insert(mLogContainer.end(), kept.rbegin(), kept.rend());
    if (store.isParsed && store.currentLog)
        store.mLogData.insert(*store.currentLog, kept);
    if (isDeleteFromWeb())
        deleteOrderedFromWeb(kept);
    if (store.currentParseCount > store.toalParseFileCount)
        QNLogger::logMonitorTrace(
            u"DEV_TEST_LOG:: XML Parsed loading issue because of count - total: %1, current: %2"_s
                .arg(store.toalParseFileCount)
                .arg(store.currentParseCount));
    showSoon();
}

void CVActivityLogsViewController::readEnded(LogReadEnd end)
{
    const Reading ended = std::exchange(m_reading, Reading::Nothing);
    if (end == LogReadEnd::Whole)
        NotificationCenter::local().post(DeleteAllLogs);
    m_deleteAllSubscription.reset();
    if (const auto next = std::exchange(m_tagAfter, std::nullopt))
        return displayLogs(*next);
    if (end == LogReadEnd::Whole && ended != Reading::ForDeletion && m_pagesToRead > m_pagesRead &&
        !LogMgrInst->unparsedLogs.empty())
        return readPage();
    m_pagesToRead = 0;
    leaveOutDeleted();
    refreshPeriods();
    displayLogsView();
    if (m_view && ended != Reading::Page)
        m_view->focusList();
}

void CVActivityLogsViewController::showSoon()
{
    const bool fills = m_view && m_view->isVisible() && m_view->model().rowCount() == 0 &&
                       m_reading != Reading::ForDeletion; // its rows are about to go
    if (fills && !mLogContainer.empty() && !m_frameTimer)
        m_frameTimer = m_surroundings.clock.start(Frame, Clock::Repeat::Once, [this] {
            m_frameTimer.reset();
            sortAndShow();
        });
}

void CVActivityLogsViewController::displayLogsView()
{
    m_frameTimer.reset();
    sortAndShow();
    initLogView();
    CVLogger::log().show(u"ActivityLogs"_s, u"%1 records are listed."_s.arg(mLogContainer.size()),
                         LogType::information);
}

LogSorting::SortDescriptor CVActivityLogsViewController::sortDescriptor() const
{
    if (!m_view)
        return {LogSorting::Key::DateTime, false};
    return {LogSorting::Key(int(m_view->table().sortColumn())),
            m_view->table().sortOrder() == Qt::AscendingOrder};
}

LogSorting::Words CVActivityLogsViewController::words() const
{
    return {.operation = LogOperations::operationName,
            .status = [](const QString &status) { return localized(status); },
            .locale = QLocale(LanguageManager::shared().currentLanguage())};
}

void CVActivityLogsViewController::sortAndShow()
{
    m_isDirty = true;
    m_sortTurn.reset(); // one that runs is about other rows
    if (!m_view || !m_view->isVisible())
        return; // viewWillAppear() comes back to it
    if (mLogContainer.size() <= SortedAtOnce) {
        LogSorting::sortLogsArray(mLogContainer, sortDescriptor(), words(), m_now, trace);
        return show();
    }
    m_sortTurn = std::make_shared<int>();
    m_sortQueue.async([this, records = mLogContainer, descriptor = sortDescriptor(), how = words(), now = m_now,
                       turn = std::weak_ptr<int>(m_sortTurn)]() mutable {
        LogSorting::sortLogsArray(records, descriptor, how, now, trace);
        onMainThread([this, turn, sorted = std::move(records)]() mutable {
            if (turn.expired())
                return;
            m_sortTurn.reset();
            mLogContainer = std::move(sorted);
            show();
        });
    });
}

void CVActivityLogsViewController::show()
{
    m_isDirty = false;
    m_view->setListState(isReading() ? LogListState::Reading : LogListState::Shown);
    const bool found = m_view->showRecords(mLogContainer, m_now);
    if (std::exchange(m_orderHasChanged, false) && m_view->table().currentRecord())
        m_view->table().scrollTo(m_view->table().currentIndex());
    if (isReading() || !std::exchange(isRefreshBTnTapped, false) || found)
        return;
    applySelectionToTableViewRow();
}

void CVActivityLogsViewController::applySelectionToTableViewRow()
{
    if (mLogContainer.empty())
        return;
    int row = std::clamp(selectedRowIndex, 0, int(mLogContainer.size()) - 1);
    if (!selectedBackupTime.isEmpty()) {
        const auto found =
            std::find_if(mLogContainer.begin(), mLogContainer.end(),
                         [this](const LogNodePtr &record) { return record->datetime == selectedBackupTime; });
        row = found == mLogContainer.end() ? 0 : int(found - mLogContainer.begin());
    }
    m_view->table().selectRows({row}, row);
    m_view->table().scrollTo(m_view->model().index(row, 0));
}
