#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"

#include "Classes/ACTIVITY_LOGS/LogListPlace.h"
#include "Classes/ACTIVITY_LOGS/LogTextView.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/TrayImage.h"
#include "Platform/Desktop/WindowLook.h"
#include "Utility/Language/ActivityLogsVC.h"
#include "ui_ActivityLogs.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace
{
namespace Texts = ActivityLogsVC;

constexpr int UsualListPercent = 62;

QIcon toolImage(const char16_t *name, bool forDarkGround)
{
    return trayImage(Bundle::main().resource(
        u"images/log_tool_%1%2.svg"_s.arg(QString::fromUtf16(name), forDarkGround ? u"_alt"_s : QString())));
}

void call(const std::function<void()> &action)
{
    if (action)
        action();
}

/// Who names a control by what it does names it for everybody.
void nameByTip(QToolButton &button, const QString &text)
{
    button.setToolTip(text);
    button.setAccessibleName(text);
}
} // namespace

ActivityLogsView::ActivityLogsView() : m_ui(std::make_unique<Ui::ActivityLogs>())
{
    m_ui->setupUi(this);
    setObjectName(u"CVActivityLogsWindow"_s);
    setWindowFlags(Qt::Window);
    setWindowTitle(Texts::activityLogsHeading);
    setWindowIcon(trayImage(Bundle::main().resource(u"images/corvane.svg"_s)));
    m_ui->logTable->setLogModel(m_model);
    m_ui->periodPopUp->setItemDelegate(new QStyledItemDelegate(this)); // the usual one takes no style sheet
    m_ui->noItemsLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_ui->splitter->setStretchFactor(0, UsualListPercent);
    m_ui->splitter->setStretchFactor(1, 100 - UsualListPercent);
    setFixedTexts();
    showTabs({LogTab::Details}, false);
    makeShortcuts();
    makeMenu();
    connectControls();
    dress();
    showPlaceHolder();
    table().setFocus(); // or the first button would have it, with its ring, whenever the window opens
}

ActivityLogsView::~ActivityLogsView() = default;

LogTableView &ActivityLogsView::table()
{
    return *m_ui->logTable;
}

LogTextView &ActivityLogsView::textView(LogTab tab)
{
    switch (tab) {
    case LogTab::Summary:
        return *m_ui->mSummaryView;
    case LogTab::Upload:
        return *m_ui->mUploadView;
    case LogTab::Download:
        return *m_ui->mDownloadView;
    case LogTab::Rename:
        return *m_ui->mRenameView;
    case LogTab::Delete:
        return *m_ui->mDeleteView;
    case LogTab::Details:
        break;
    }
    return *m_ui->mDetailView;
}

void ActivityLogsView::setFixedTexts()
{
    m_ui->viewLogsFromLabel->setText(Texts::viewLogsFromLabel);
    m_ui->periodPopUp->setAccessibleName(Texts::viewLogsFromLabel);
    m_ui->logTable->setAccessibleName(Texts::activityLogsHeading);
    nameByTip(*m_ui->refreshButton, Texts::refreshbtnTooltip);
    nameByTip(*m_ui->helpButton, Texts::onlineHelp);
    for (const LogTab tab :
         {LogTab::Details, LogTab::Summary, LogTab::Upload, LogTab::Download, LogTab::Rename, LogTab::Delete})
        textView(tab).setAccessibleName(LogTabs::title(tab));
}

void ActivityLogsView::makeShortcuts()
{
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, [this] { call(refresh); });
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    for (int column = 0; column < int(LogColumn::Delete); ++column) {
        auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + column)), this);
        connect(shortcut, &QShortcut::activated, this, [this, column] { table().sortBy(LogColumn(column)); });
    }
}

void ActivityLogsView::makeMenu()
{
    m_menu = new QMenu(this);
    const struct {
        const char16_t *name;
        const LocalizedText &text;
        std::function<void()> ActivityLogsView::*action;
    } entries[] = {
        {u"deleteSelectedItemsRef", Texts::deleteSelectedMenu, &ActivityLogsView::deleteSelectedItems},
        {u"deleteAllItemsRef", Texts::deleteAllMenu, &ActivityLogsView::deleteAllItems},
        {u"ArchiveRef", Texts::archiveCleanupMenu, &ActivityLogsView::archiveSelectedLog},
    };
    for (const auto &entry : entries) {
        QAction *action = m_menu->addAction(entry.text);
        action->setObjectName(QString::fromUtf16(entry.name));
        // Later: what asks the user must not hold the menu that is closing.
        connect(
            action, &QAction::triggered, this, [this, does = entry.action] { call(this->*does); },
            Qt::QueuedConnection);
    }
}

void ActivityLogsView::connectControls()
{
    connect(m_ui->periodPopUp, &QComboBox::activated, this, [this](int entry) {
        if (periodChosen)
            periodChosen(m_ui->periodPopUp->itemData(entry).toInt());
    });
    connect(m_ui->refreshButton, &QToolButton::clicked, this, [this] { call(refresh); });
    connect(m_ui->helpButton, &QToolButton::clicked, this, [this] { call(onlineHelp); });
    connect(m_ui->splitter, &QSplitter::splitterMoved, this, &ActivityLogsView::tellStoodAnew);
    LogTableView &list = table();
    list.deleteButtonPressed = [this](const LogNodePtr &record) {
        if (deleteRow)
            deleteRow(record);
    };
    list.deletePressed = [this] { call(deleteSelectedItems); };
    list.opened = [this](const LogNodePtr &record) {
        if (openLog)
            openLog(record);
    };
    list.menuRequested = [this](const QPoint &place) { m_menu->popup(place); };
    list.sortChanged = [this] { call(sortChanged); };
    list.reachedEnd = [this] { call(reachedEnd); };
    list.columnsChanged = [this] { tellStoodAnew(); };
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ActivityLogsView::selectionMayHaveChanged);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &ActivityLogsView::selectionMayHaveChanged);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &ActivityLogsView::showPlaceHolder);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, &ActivityLogsView::showPlaceHolder);
}

// Period

void ActivityLogsView::setPeriods(const std::vector<LogPeriodEntry> &periods)
{
    if (periods == m_periods)
        return; // the pop-up may be open just now
    m_periods = periods;
    const QVariant selected = m_ui->periodPopUp->currentData();
    m_ui->periodPopUp->clear();
    for (const LogPeriodEntry &period : periods)
        m_ui->periodPopUp->addItem(period.title, period.tag);
    if (selected.isValid())
        selectPeriod(selected.toInt());
}

void ActivityLogsView::selectPeriod(int tag)
{
    m_ui->periodPopUp->setCurrentIndex(m_ui->periodPopUp->findData(tag));
}

// List

bool ActivityLogsView::showRecords(const LogNodes &records, const QDateTime &now)
{
    const LogListPlace place = LogListPlace::of(table());
    m_model.setRecords(records, now);
    return place.restore(table());
}

void ActivityLogsView::focusList()
{
    if (isActiveWindow())
        table().setFocus();
}

void ActivityLogsView::setListState(LogListState state)
{
    m_listState = state;
    showPlaceHolder();
}

void ActivityLogsView::showPlaceHolder()
{
    m_ui->noItemsLabel->setText(m_listState == LogListState::Reading ? Texts::readingLogs
                                                                     : Texts::noItemsFound);
    m_ui->noItemsLabel->setVisible(m_model.rowCount() == 0);
}

void ActivityLogsView::selectionMayHaveChanged()
{
    if (std::exchange(m_selectionIsTold, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_selectionIsTold = false;
            call(selectionChanged);
        },
        Qt::QueuedConnection);
}

// Texts

void ActivityLogsView::showTabs(const std::vector<LogTab> &tabs, bool isSync, TabShown shown)
{
    QTabWidget *panel = isSync ? m_ui->mSyncTabView : m_ui->mDetailTabView;
    QTabWidget *other = isSync ? m_ui->mDetailTabView : m_ui->mSyncTabView;
    std::vector<QWidget *> wanted;
    wanted.reserve(tabs.size());
    for (const LogTab tab : tabs)
        wanted.push_back(&textView(tab));
    bool isSame = panel->count() == int(wanted.size());
    for (int i = 0; isSame && i < panel->count(); ++i)
        isSame = panel->widget(i) == wanted[std::size_t(i)] &&
                 panel->tabText(i) == LogTabs::title(tabs[std::size_t(i)]);
    if (!isSame) {
        panel->clear();
        for (const LogTab tab : tabs)
            panel->addTab(&textView(tab), LogTabs::title(tab));
    }
    if (!isSame || shown == TabShown::First)
        panel->setCurrentIndex(0);
    other->hide();
    panel->show();
}

// Look and place

void ActivityLogsView::setDark(bool dark)
{
    if (dark == m_isDark)
        return;
    m_isDark = dark;
    dress();
}

void ActivityLogsView::dress()
{
    WindowLook::apply(*this, m_isDark);
    m_ui->refreshButton->setIcon(toolImage(u"refresh", m_isDark));
    m_ui->helpButton->setIcon(toolImage(u"help", m_isDark));
    table().setDark(m_isDark);
    for (LogTextView *text : findChildren<LogTextView *>())
        text->setDark(m_isDark);
}

LogWindowSettings ActivityLogsView::settings() const
{
    LogWindowSettings settings;
    settings.frame = saveGeometry();
    settings.columns = m_ui->logTable->columns();
    const QList<int> sizes = m_ui->splitter->sizes();
    settings.listPercent = 100 * sizes[0] / std::max(1, sizes[0] + sizes[1]);
    return settings;
}

void ActivityLogsView::restore(const LogWindowSettings &settings)
{
    if (!settings.frame.isEmpty())
        restoreGeometry(settings.frame);
    layout()->activate();
    const int percent = settings.listPercent > 0 ? settings.listPercent : UsualListPercent;
    m_ui->splitter->setSizes({percent * 10, (100 - percent) * 10});
    if (settings.columns.empty())
        table().setUsualColumns();
    else
        table().setColumns(settings.columns);
}

void ActivityLogsView::tellStoodAnew()
{
    if (isVisible())
        call(stoodAnew);
}

bool ActivityLogsView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::ApplicationFontChange) // when the others have taken theirs
        QMetaObject::invokeMethod(this, &ActivityLogsView::dress, Qt::QueuedConnection);
    return handled;
}

void ActivityLogsView::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        call(appears);
    QWidget::showEvent(event);
}

void ActivityLogsView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        call(disappears);
}

void ActivityLogsView::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    tellStoodAnew();
}

void ActivityLogsView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    tellStoodAnew();
}

void ActivityLogsView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QWidget::keyPressEvent(event);
}
