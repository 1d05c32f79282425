// Start and window. The list is kept whether or not there is a window; only what a window would show, the order
// of the rows and the texts of a record, waits until one is open.

#include "Classes/ACTIVITY_LOGS/CVActivityLogsViewController.h"

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"
#include "Classes/ACTIVITY_LOGS/LogTextView.h"
#include "Platform/UserDefaults.h"
#include "Utility/Paths/PathTable.h"

#include <utility>

using namespace Qt::StringLiterals;

CVActivityLogsViewController::CVActivityLogsViewController(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_now(m_surroundings.clock.now()),
      m_textReader(LogTexts::ownFacts(m_surroundings.publicWebHost), LogTexts::ownSentences())
{
}

CVActivityLogsViewController::~CVActivityLogsViewController()
{
    m_cleanUpStop.request_stop();
}

void CVActivityLogsViewController::viewDidLoad()
{
    for (const LogPeriods::Period &period : LogPeriods::all())
        m_periodObservations.push_back(NotificationCenter::local().observe(
            pathValue(period.key), [this, tag = period.tag](const QVariantMap &) { updatePopUpMenu(tag); }));
    initLogView();
    storePeriod(LogPeriods::Week);
    selectPeriod(LogPeriods::Week);
    displayLogs(LogPeriods::Week);
}

void CVActivityLogsViewController::setView(ActivityLogsView *view)
{
    m_view = view;
    m_frameTimer.reset();
    m_isDirty = true;
    if (view)
        connectView();
}

void CVActivityLogsViewController::connectView()
{
    m_view->periodChosen = [this](int tag) { sortLogs(tag); };
    m_view->refresh = [this] { refreshAction(); };
    m_view->onlineHelp = [this] { onlineHelp(); };
    m_view->deleteRow = [this](const LogNodePtr &record) { deleteRow(record); };
    m_view->deleteSelectedItems = [this] { deleteSelectedItems(); };
    m_view->deleteAllItems = [this] { deleteAllItems(); };
    m_view->archiveSelectedLog = [this] { archiveSelectedLog(); };
    m_view->openLog = [this](const LogNodePtr &record) { openLog(record); };
    m_view->selectionChanged = [this] { selectedRow(); };
    m_view->sortChanged = [this] {
        m_orderHasChanged = true;
        if (!isReading() || m_view->model().rowCount() == 0)
            sortAndShow(); // else the rows on view stay until the read has ended
    };
    m_view->reachedEnd = [this] { scrollViewDidScroll(); };
    m_view->appears = [this] { viewWillAppear(); };
    for (const LogTab tab :
         {LogTab::Details, LogTab::Summary, LogTab::Upload, LogTab::Download, LogTab::Rename, LogTab::Delete}) {
        QObject::connect(&m_view->textView(tab), &LogTextView::linkActivated, m_view,
                         [this](const LogLink &link) {
                             if (mainController)
                                 LogLinks::open(link, *mainController);
                         });
    }
    refreshPeriods();
    m_view->setListState(isReading() ? LogListState::Reading : LogListState::Shown);
}

void CVActivityLogsViewController::viewWillAppear()
{
    refreshPeriods();
    if (m_isDirty)
        sortAndShow();
}

void CVActivityLogsViewController::userDidChange()
{
    // What was ordered for one account is not another's.
    m_webOrders.clear();
    m_deletedMeanwhile.clear();
    m_choice.reset();
    m_tagAfter.reset();
    m_reading = Reading::Nothing;
    displayLogs(m_tag);
}

void CVActivityLogsViewController::initLogView()
{
    m_sweep.start(pathValue("SessionLogsNewFolderPath"_L1, {}), [this](const OldLogLayout::Swept &swept) {
        if (swept.moved > 0 && !isReading())
            displayLogs(m_tag); // day files may have been among them
    });
    initializers();
}

void CVActivityLogsViewController::initializers()
{
    if (!LogMgrInst)
        useStore(m_logs);
    LogMgrInst->createOldLogs(m_surroundings.defaults, [this](int records) {
        if (records > 0)
            displayLogs(m_tag);
    });
}
