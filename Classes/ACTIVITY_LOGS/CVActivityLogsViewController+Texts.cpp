// Texts and saving. The texts of a record are read in the background and shown together; those of the record
// before stay until then, or until it takes so long that they would be taken for the new one's.

#include "Classes/ACTIVITY_LOGS/CVActivityLogsViewController.h"

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"
#include "Classes/ACTIVITY_LOGS/LogTextView.h"
#include "Utility/Language/AlertPanel.h"
#include "Utility/Language/LogTextSentences.h"
#include "Utility/QNUtility.h"

#include <QDir>
#include <QUrl>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr Clock::Duration OldTextsStay{200};
constexpr LogTab Tabs[] = {LogTab::Details,  LogTab::Summary, LogTab::Upload,
                           LogTab::Download, LogTab::Rename,  LogTab::Delete};
} // namespace

void CVActivityLogsViewController::selectedRow()
{
    if (!m_view)
        return;
    const LogNodePtr record = m_view->table().currentRecord();
    // A page that came leaves the same record selected; a refresh reads its texts anew.
    if (record && record == selectedNode)
        return;
    const bool isReread = record && selectedNode && SameRecord()(record, selectedNode);
    selectedNode = record;
    if (!record) {
        m_textReader.cancel();
        return emptyTexts();
    }
    if (!isReread)
        m_textsTimer = m_surroundings.clock.start(OldTextsStay, Clock::Repeat::Once, [this] { emptyTexts(); });
    m_textReader.read(record->logfile, LogTabs::isSyncLog(record->logfile),
                      [this, isReread](const LogPage &page) { showPage(page, isReread); });
}

void CVActivityLogsViewController::showPage(const LogPage &page, bool isReread)
{
    m_textsTimer.reset();
    if (!m_view)
        return;
    std::vector<LogTab> tabs;
    for (const LogPage::Tab &tab : page.tabs)
        tabs.push_back(tab.tab);
    m_view->showTabs(tabs, page.isSync,
                     isReread ? ActivityLogsView::TabShown::Stays : ActivityLogsView::TabShown::First);
    for (const LogTab tab : Tabs) {
        LogTextView &view = m_view->textView(tab);
        const auto found = std::find_if(page.tabs.begin(), page.tabs.end(),
                                        [tab](const LogPage::Tab &other) { return other.tab == tab; });
        // The same text keeps the reader's place in it.
        if (found == page.tabs.end())
            view.empty();
        else if (view.shown() != found->text)
            view.showText(found->text);
    }
}

void CVActivityLogsViewController::emptyTexts()
{
    m_textsTimer.reset();
    if (!m_view)
        return;
    for (const LogTab tab : Tabs)
        m_view->textView(tab).empty();
}

void CVActivityLogsViewController::openLog(const LogNodePtr &record)
{
    if (record && mainController && QDir::isAbsolutePath(record->logfile))
        mainController->openPlainText(record->logfile);
}

void CVActivityLogsViewController::onlineHelp()
{
    const QString page =
        QNUtility::isThinClient() ? u"/help/mac-thin/view_logs"_s : u"/help/mac-help/log.htm"_s;
    if (mainController && !m_surroundings.publicWebHost.isEmpty())
        mainController->openUrl(QUrl(m_surroundings.publicWebHost + page));
}

// Saving

void CVActivityLogsViewController::archiveSelectedLog()
{
    if (!m_view)
        return;
    // The list may be another by the time that a folder is chosen.
    std::vector<LogArchive::Row> rows;
    for (const LogNodePtr &record : m_view->table().selectedRecords())
        rows.push_back({record->logfile, LogTabs::isSyncLog(record->logfile)});
    if (!rows.empty())
        saveRows(rows);
}

void CVActivityLogsViewController::saveRows(const std::vector<LogArchive::Row> &rows)
{
    if (m_surroundings.chooseFolder)
        m_surroundings.chooseFolder(m_view, QDir::homePath() + u"/Desktop/"_s,
                                    [this, rows](const QString &folder) { saveTo(folder, rows); });
}

void CVActivityLogsViewController::saveTo(const QString &folder, const std::vector<LogArchive::Row> &rows)
{
    if (!m_view || !mainController)
        return;
    if (!LogArchive::isWritable(folder)) {
        const bool another = mainController->ask({.title = DynamicViewLogs::selectedFolderAlert,
                                                  .text = DynamicViewLogs::unableToWriteAlert,
                                                  .defaultButton = DynamicViewLogs::selectAnotherBtn,
                                                  .alternateButton = AlertPanel::okButton});
        return another ? saveRows(rows) : void();
    }
    m_saving.start(rows, folder, [this](const LogArchive::Saved &saved) {
        if (saved.needsAlert() && mainController)
            std::ignore = mainController->ask(
                {.text = DynamicViewLogs::unableToWriteAlert, .defaultButton = AlertPanel::okButton});
    });
}
