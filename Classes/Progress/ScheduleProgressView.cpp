#include "Classes/Progress/ScheduleProgressView.h"

#include "Classes/Progress/ProgressRules.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/TrayImage.h"
#include "Platform/Desktop/WindowLook.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/Paths/PathTable.h"
#include "ui_ScheduleProgress.h"

#include <QKeyEvent>
#include <QScreen>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
namespace Texts = SchedulerProgressVC;
using Form = Ui::ScheduleProgress;

constexpr QSize PreparingImageSize(48, 48);
constexpr int SmallestIcon = 16; ///< beside a text; as high as the line where that is higher

/// Texts that are shown as they come.
struct TextOutlet {
    ElidedLabel *Form::*label;
    QString ProgressDisplay::*text;
};
constexpr TextOutlet TextOutlets[] = {
    {&Form::dummyProgressLabel, &ProgressDisplay::preparingText},
    {&Form::scFilePath, &ProgressDisplay::scFilePath},
    {&Form::scSpeedText, &ProgressDisplay::scSpeedText},
    {&Form::scRemainingFiles_Dedup, &ProgressDisplay::scRemainingFiles_Dedup},
    {&Form::scCompletedFiles_Dedup, &ProgressDisplay::scCompletedFiles_Dedup},
    {&Form::scEstimatedTime_Dedup, &ProgressDisplay::scEstimatedTime_Dedup},
    {&Form::scElapsedTime, &ProgressDisplay::scElapsedTime},
};

/// Those that can be hidden.
struct HideableOutlet {
    ElidedLabel *Form::*label;
    DisplayText ProgressDisplay::*text;
};
constexpr HideableOutlet HideableOutlets[] = {
    {&Form::scProgressStatus, &ProgressDisplay::scProgressStatus},
    {&Form::scProgressText, &ProgressDisplay::scProgressText},
    {&Form::scElapsedTime_Dedup, &ProgressDisplay::scElapsedTime_Dedup},
    {&Form::scEstimatedTime, &ProgressDisplay::scEstimatedTime},
};

/// Titles of fields, and what never changes.
struct TitleOutlet {
    ElidedLabel *Form::*label;
    const LocalizedText &text;
};
const TitleOutlet TitleOutlets[] = {
    {&Form::scRemainingFilesTitle_Dedup, Texts::pendingFiles},
    {&Form::scCompletedFilesTitle_Dedup, Texts::completedFiles},
    {&Form::scEstimatedTimeTitle_Dedup, Texts::estimatedTime},
    {&Form::scElapsedTimeTitle_Dedup, Texts::elapsedTime},
    {&Form::scElapsedTimeTitle, Texts::elapsedTime},
    {&Form::scEstimatedTimeTitle, Texts::estimatedTime},
};

QString imageFile(const char16_t *name, bool forDarkGround)
{
    return Bundle::main().resource(
        u"images/%1%2.svg"_s.arg(QString::fromUtf16(name), forDarkGround ? u"_alt"_s : QString()));
}
} // namespace

ScheduleProgressView::ScheduleProgressView(Clock &clock) : m_ui(std::make_unique<Form>())
{
    m_ui->setupUi(this);
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    setFocusPolicy(Qt::ClickFocus);
    setWindowTitle(pathValue("ApplicationFullName"_L1));
    const QIcon icon = trayImage(Bundle::main().resource(u"images/corvane.svg"_s));
    setWindowIcon(icon);
    m_ui->dummyProgressImage->setPixmap(icon.pixmap(PreparingImageSize, devicePixelRatioF()));
    m_ui->progressBarView->setClock(clock);
    m_ui->dummyProgressBar->setClock(clock);
    m_ui->bandwidthSlider->setClock(clock);
    m_ui->bandwidthSlider->setDelegate(this);
    keepPlacesOfHidden();
    setFixedTexts();
    setTabOrder();
    connectControls();
    dress();
    apply({});
}

ScheduleProgressView::~ScheduleProgressView()
{
    // The slider outlives this part of the window, and tells what the user was at when it goes.
    m_ui->bandwidthSlider->disconnect(this);
    m_ui->bandwidthSlider->setDelegate(nullptr);
}

/// Nothing moves when a job goes from one state to the next.
void ScheduleProgressView::keepPlacesOfHidden()
{
    for (QWidget *widget : std::initializer_list<QWidget *>{
             m_ui->scWholeView, m_ui->dummyProgressView, m_ui->scFileCountView, m_ui->backupInfoBgView,
             m_ui->scProgressStatus, m_ui->scProgressText, m_ui->progressBarView, m_ui->scElapsedTime_Dedup,
             m_ui->scEstimatedTime, m_ui->bandwidthBgView, m_ui->bandwidthHelpIcon, m_ui->autoPauseIcon,
             m_ui->scPauseButton, m_ui->scStopButton}) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }
}

/// From the window itself on, which has the focus when it opens.
void ScheduleProgressView::setTabOrder()
{
    QWidget *last = this;
    for (QWidget *next :
         std::initializer_list<QWidget *>{m_ui->scPauseButton, m_ui->scStopButton, m_ui->bandwidthSlider,
                                          m_ui->bandwidthHelpIcon, m_ui->autoPauseIcon}) {
        QWidget::setTabOrder(last, next);
        last = next;
    }
}

void ScheduleProgressView::setFixedTexts()
{
    for (const TitleOutlet &outlet : TitleOutlets) {
        (m_ui.get()->*outlet.label)->setText(outlet.text);
        (m_ui.get()->*outlet.label)->setReservedText(outlet.text);
    }
    // The window is as wide as its title with a usual account needs.
    const QString account = u"account.name@example.com : "_s;
    const QString &longer = std::max<const QString &>(
        Texts::prorgessTitile, Texts::pausedTitle, [this](const auto &a, const auto &b) {
            return fontMetrics().horizontalAdvance(a) < fontMetrics().horizontalAdvance(b);
        });
    m_ui->titleEmailLabel->setReservedText(account + longer);
    m_ui->bandwidthLabel->setText(Texts::bandwidthLabel);
    m_ui->bandwidthSlider->setAccessibleName(Texts::bandwidthLabel);
    m_ui->bandwidthSlider->setAccessibleDescription(Texts::bandwidthHelpTooltip);
    m_ui->bandwidthHelpIcon->setToolTip(Texts::bandwidthHelpTooltip);
    m_ui->bandwidthHelpIcon->setAccessibleName(Texts::bandwidthHelpTooltip);
    m_ui->autoPauseIcon->setToolTip(Texts::autoPauseTooltip);
    m_ui->autoPauseIcon->setAccessibleName(Texts::autoPauseTooltip);
    m_ui->dummyProgressBar->setAccessibleName(Texts::prorgessTitile);
    m_ui->scStopButton->setText(Texts::stop);
    m_ui->scStopButton->setAccessibleName(Texts::stop);
}

/// By the font in use: what may stand there never moves its neighbours.
void ScheduleProgressView::reserveRoom()
{
    for (ElidedLabel *label : {m_ui->scEstimatedTime, m_ui->scEstimatedTime_Dedup})
        label->setReservedText(Texts::calculating);
    for (QWidget *widget : findChildren<QWidget *>())
        widget->ensurePolished(); // it has its font only then
    // What stands beside the large percent text stands on its base line.
    const int higher =
        m_ui->scProgressText->fontMetrics().descent() - m_ui->scSpeedText->fontMetrics().descent();
    for (ElidedLabel *label : {m_ui->scProgressStatus, m_ui->scSpeedText})
        label->setContentsMargins(0, 0, 0, higher);
    const int side = std::max(SmallestIcon, m_ui->bandwidthLabel->fontMetrics().height());
    for (QAbstractButton *button : findChildren<QAbstractButton *>())
        button->setIconSize(QSize(side, side));
    int width = m_ui->scStopButton->sizeHint().width();
    QPushButton measured(m_ui->footerView);
    measured.setIcon(m_ui->scPauseButton->icon());
    measured.setIconSize(m_ui->scPauseButton->iconSize());
    for (const LocalizedText *text : {&Texts::pauseBtn, &Texts::resumeBtn}) {
        measured.setText(*text);
        width = std::max(width, measured.sizeHint().width());
    }
    m_ui->scPauseButton->setFixedWidth(width);
    m_ui->scStopButton->setFixedWidth(width);
    // The layout of what is hidden isn't told of a change; innermost first, since each asks those within it.
    const QList<QWidget *> widgets = findChildren<QWidget *>();
    for (auto widget = widgets.rbegin(); widget != widgets.rend(); ++widget) {
        (*widget)->updateGeometry();
        if (QLayout *inner = (*widget)->layout()) {
            inner->invalidate();
            inner->activate();
        }
    }
    layout()->activate();
}

void ScheduleProgressView::connectControls()
{
    connect(m_ui->scPauseButton, &QPushButton::clicked, this, [this] {
        if (pauseOrResume)
            pauseOrResume(m_shown && m_shown->isPaused ? JobOrder::Resume : JobOrder::Pause);
    });
    connect(m_ui->scStopButton, &QPushButton::clicked, this, [this] {
        if (stop)
            stop();
    });
    connect(m_ui->bandwidthSlider, &QSlider::valueChanged, this, &ScheduleProgressView::userMovedSlider);
    for (QToolButton *icon : {m_ui->bandwidthHelpIcon, m_ui->autoPauseIcon}) {
        connect(icon, &QToolButton::clicked, icon, [icon] {
            QToolTip::showText(icon->mapToGlobal(QPoint(0, icon->height())), icon->toolTip(), icon);
        });
    }
}

void ScheduleProgressView::setDark(bool dark)
{
    if (dark == m_isDark)
        return;
    m_isDark = dark;
    dress();
}

void ScheduleProgressView::dress()
{
    WindowLook::apply(*this, m_isDark);
    m_ui->bandwidthHelpIcon->setIcon(trayImage(imageFile(u"bandwidth_help", m_isDark)));
    m_ui->autoPauseIcon->setIcon(trayImage(imageFile(u"bandwidth_auto_pause", m_isDark)));
    showPauseButton(m_shown && m_shown->isPaused);
    reserveRoom();
}

void ScheduleProgressView::apply(const ProgressDisplay &display)
{
    if (m_shown == display)
        return;
    const std::optional<ProgressDisplay> before = std::exchange(m_shown, display);
    const ProgressDisplay *known = before ? &*before : nullptr;
    showTexts(known, display);
    showVisibility(known, display);
    showBandwidth(display);
    m_ui->progressBarView->setPaused(display.isPaused);
    m_ui->progressBarView->setValue(std::clamp(display.progressPercent, 0, 100));
    m_ui->dummyProgressBar->setSweeping(display.preparingBarRuns);
    if (!known || known->isPaused != display.isPaused)
        showPauseButton(display.isPaused);
}

void ScheduleProgressView::showTexts(const ProgressDisplay *before, const ProgressDisplay &now)
{
    for (const TextOutlet &outlet : TextOutlets) {
        if (!before || before->*outlet.text != now.*outlet.text)
            (m_ui.get()->*outlet.label)->setText(now.*outlet.text);
    }
    for (const HideableOutlet &outlet : HideableOutlets) {
        const DisplayText &text = now.*outlet.text;
        if (before && before->*outlet.text == text)
            continue;
        (m_ui.get()->*outlet.label)->setText(text.text);
        (m_ui.get()->*outlet.label)->setVisible(text.isShown);
    }
    const QString &title = now.titleEmailLabel;
    if (!before || before->titleEmailLabel != title) {
        const qsizetype endOfAccount = title.lastIndexOf(" : "_L1);
        m_ui->titleEmailLabel->setKeptEnd(endOfAccount < 0 ? 0 : title.size() - endOfAccount);
        m_ui->titleEmailLabel->setText(title);
        // A bar must have a name even before there is a title.
        m_ui->progressBarView->setAccessibleName(title.isEmpty() ? Texts::prorgessTitile.text() : title);
    }
}

void ScheduleProgressView::showVisibility(const ProgressDisplay *before, const ProgressDisplay &now)
{
    const struct {
        QWidget *widget;
        bool ProgressDisplay::*isShown;
    } rows[] = {
        {m_ui->progressBarView, &ProgressDisplay::progressBarIsShown},
        {m_ui->scFileCountView, &ProgressDisplay::scFileCountViewIsShown},
        {m_ui->backupInfoBgView, &ProgressDisplay::backupInfoBgViewIsShown},
        {m_ui->bandwidthBgView, &ProgressDisplay::bandwidthBgViewIsShown},
        {m_ui->bandwidthHelpIcon, &ProgressDisplay::bandwidthHelpIsShown},
        {m_ui->autoPauseIcon, &ProgressDisplay::autoPauseIconIsShown},
        {m_ui->scPauseButton, &ProgressDisplay::scPauseButtonIsShown},
        {m_ui->scStopButton, &ProgressDisplay::scStopButtonIsShown},
    };
    for (const auto &row : rows) {
        if (!before || before->*row.isShown != now.*row.isShown)
            row.widget->setVisible(now.*row.isShown);
    }
    m_ui->dummyProgressView->setVisible(now.pane == ProgressDisplay::Pane::Preparing);
    m_ui->scWholeView->setVisible(now.pane == ProgressDisplay::Pane::Main);
}

void ScheduleProgressView::showBandwidth(const ProgressDisplay &now)
{
    if (m_ui->bandwidthSlider->isInUse()) {
        m_shown->bandwidthPercent = m_ui->bandwidthSlider->value();
        return;
    }
    m_ui->bandwidthSlider->showValue(now.bandwidthPercent);
    m_ui->bandwidthPercentText->setText(ProgressRules::percentText(now.bandwidthPercent));
}

void ScheduleProgressView::showPauseButton(bool isPaused)
{
    QPushButton *button = m_ui->scPauseButton;
    button->setText(isPaused ? Texts::resumeBtn : Texts::pauseBtn);
    button->setAccessibleName(button->text());
    button->setToolTip(isPaused ? Texts::resumeTooltip : Texts::pauseTooltip);
    // Going on is what a paused job suggests. The ink of the accent is light on a light desktop, and the other
    // way round.
    button->setIcon(trayImage(isPaused ? imageFile(u"progress_resume", !m_isDark)
                                       : imageFile(u"progress_pause", m_isDark)));
    button->setProperty("accent", isPaused);
    button->style()->unpolish(button); // the sheet looks at the property only then
    button->style()->polish(button);
}

void ScheduleProgressView::userMovedSlider(int percent)
{
    m_shown->bandwidthPercent = percent;
    m_ui->bandwidthPercentText->setText(ProgressRules::percentText(percent));
    if (sliderMoved)
        sliderMoved(percent);
}

void ScheduleProgressView::sliderDidFinishMoving(CustomSlider &slider)
{
    if (sliderDone)
        sliderDone(slider.value());
}

std::chrono::milliseconds ScheduleProgressView::framePeriod(const QWidget *widget)
{
    constexpr std::chrono::milliseconds Unknown{16};
    const QScreen *screen = widget ? widget->screen() : nullptr;
    const double rate = screen ? screen->refreshRate() : 0;
    if (!(rate >= 1 && rate <= 1000))
        return Unknown;
    return std::chrono::milliseconds(static_cast<int>(std::ceil(1000 / rate)));
}

bool ScheduleProgressView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::ApplicationFontChange) // when the others have taken theirs
        QMetaObject::invokeMethod(this, &ScheduleProgressView::dress, Qt::QueuedConnection);
    return handled;
}

void ScheduleProgressView::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        setFocus(); // or the first button would have it, with its ring, whenever the window opens
        if (appears)
            appears();
    }
    QWidget::showEvent(event);
}

void ScheduleProgressView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        m_ui->bandwidthSlider->endUse();
}

void ScheduleProgressView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QWidget::keyPressEvent(event);
}
