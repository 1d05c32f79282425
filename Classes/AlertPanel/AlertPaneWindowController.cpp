#include "Classes/AlertPanel/AlertPaneWindowController.h"

#include "Classes/AlertPanel/AlertLabel.h"
#include "Classes/AlertPanel/AlertRules.h"
#include "Classes/AlertPanel/CVAlertCenterWindow.h"
#include "Classes/AlertPanel/ModalSession.h"
#include "Platform/MainThread.h"
#include "Utility/Language/AlertPanel.h"
#include "ui_AlertPanel.h"
#include "ui_ReverseAlertPanel.h"

#include <QApplication>
#include <QIcon>
#include <QVariant>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
bool hasTitle(const std::optional<QString> &title)
{
    return title && !title->trimmed().isEmpty();
}
} // namespace

void AlertPaneWindowController::WindowDeleter::operator()(CVAlertCenterWindow *window) const
{
    // Later, since it may be the one whose event brought us here.
    onMainThread([window] {
        window->hide();
        window->deleteLater();
    });
}

AlertPaneWindowController::AlertPaneWindowController(const AlertSurroundings &surroundings,
                                                     AlertPaneWindowControllerDelegateProtocol *delegate)
    : mDelegateObj(delegate), m_surroundings(surroundings)
{
}

std::unique_ptr<AlertPaneWindowController>
AlertPaneWindowController::withdefaultButton(const AlertSurroundings &surroundings, const Title &defaultButton,
                                             const Title &alternateButton, const Title &otherButton,
                                             AlertPaneWindowControllerDelegateProtocol *delegate)
{
    std::unique_ptr<AlertPaneWindowController> alert(new AlertPaneWindowController(surroundings, delegate));
    alert->m_defaultButton = defaultButton;
    alert->m_alternateButton = alternateButton;
    alert->m_otherButton = otherButton;
    return alert;
}

std::unique_ptr<AlertPaneWindowController> AlertPaneWindowController::reverseAlertWithDefaultButton(
    const AlertSurroundings &surroundings, const Title &defaultButton, const Title &alternateButton,
    AlertPaneWindowControllerDelegateProtocol *delegate)
{
    return withdefaultButton(surroundings, defaultButton, alternateButton, {}, delegate);
}

AlertPaneWindowController::~AlertPaneWindowController()
{
    m_alive.reset();
    if (m_session)
        m_session->stop();
    if (mAlertPanelWindow)
        onMainThreadAndWait([this] { mAlertPanelWindow.reset(); }); // it calls us as long as it stands
}

// ---- Showing ------------------------------------------------------------------------------------------------

int AlertPaneWindowController::displayMessage(const std::optional<QString> &message,
                                              const std::optional<QString> &title, bool isModal)
{
    int result = AlternateButton; // also where the application has ended and drops the work
    onMainThreadAndWait([&] { result = display(Form::Plain, message, title, isModal); });
    return result;
}

int AlertPaneWindowController::displayReverseAlertMessage(const std::optional<QString> &message,
                                                          const std::optional<QString> &title, bool isModal)
{
    int result = ReverseAlternateButton;
    onMainThreadAndWait([&] { result = display(Form::Reverse, message, title, isModal); });
    return result;
}

int AlertPaneWindowController::display(Form form, const std::optional<QString> &message,
                                       const std::optional<QString> &title, bool isModal)
{
    const int safe = form == Form::Plain ? AlternateButton : ReverseAlternateButton;
    if (!QCoreApplication::instance() || (isModal && !ModalSession::isPossible()))
        return safe;
    loadWindow(form);
    setImage();
    mIsModal = isModal;
    const QString shownMessage =
        AlertRules::displayText(message.value_or(QString()), AlertRules::MaxMessageCharacters);
    setTexts(shownMessage, AlertRules::displayText(title.value_or(QString()), AlertRules::MaxTitleCharacters));
    AlertWindowLayout::fit(
        m_outlets, AlertRules::calculateTotalLines(message ? std::optional(shownMessage) : std::nullopt));
    makeReady();
    if (!isModal) // closed again when this returns, so it doesn't come to the screen for nothing
        return safe;

    const std::weak_ptr<const int> alive = m_alive;
    showModelWindow();
    if (alive.expired())
        return safe;
    const int result = mButtonClicked;
    closeWindow();
    return result;
}

void AlertPaneWindowController::makeReady()
{
    mButtonClicked = m_form == Form::Plain ? AlternateButton : ReverseAlternateButton;
    m_awaitsAnswer = true;
    m_outlets.window->setWindowModality(mIsModal ? Qt::ApplicationModal : Qt::NonModal);
    m_outlets.window->center();
}

void AlertPaneWindowController::showModelWindow()
{
    const std::weak_ptr<const int> alive = m_alive;
    ModalSession session([this] { endUnanswered(); });
    m_session = &session;
    m_outlets.window->makeKeyAndOrderFront();
    session.run();
    if (!alive.expired())
        m_session = nullptr;
}

void AlertPaneWindowController::showWindow()
{
    onMainThreadAndWait([this] { showNonModalWindow(); });
}

void AlertPaneWindowController::showNonModalWindow()
{
    if (!mAlertPanelWindow || mIsModal)
        return;
    makeReady();
    m_outlets.window->dress(); // the desktop may have turned light or dark since
    m_outlets.window->makeKeyAndOrderFront();
}

bool AlertPaneWindowController::isWindowShown() const
{
    return mAlertPanelWindow && mAlertPanelWindow->isVisible();
}

void AlertPaneWindowController::closeWindow()
{
    m_awaitsAnswer = false;
    if (!isWindowShown())
        return;
    mAlertPanelWindow->hide();
    if (mainController)
        mainController->alertWindowDidClose();
}

void AlertPaneWindowController::refreshColours()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        // One that has gone may be waiting for its end, and its alert, whose functions it has, be gone too.
        if (auto *window = dynamic_cast<CVAlertCenterWindow *>(widget); window && window->isVisible())
            window->dress();
    }
}

// ---- Answers ------------------------------------------------------------------------------------------------

void AlertPaneWindowController::buttonClicked(const QAbstractButton *sender)
{
    if (!sender || sender->isHidden())
        return;
    if (sender == mOkButton)
        answer(FirstButton, yesButtonAction);
    else if (sender == mCancelButton)
        answer(AlternateButton, {});
    else if (sender == mOtherButton)
        answer(OtherButton, {});
}

void AlertPaneWindowController::reverseAlertButtonClicked(const QAbstractButton *sender)
{
    if (!sender || sender->isHidden())
        return;
    if (sender == mOkButton)
        answer(ReverseFirstButton, {});
    else if (sender == mCancelButton)
        answer(ReverseAlternateButton, {});
}

/// `action` may show other alerts and may end this one; a second click while it runs is none.
void AlertPaneWindowController::answer(int result, const std::function<void()> &action)
{
    if (!std::exchange(m_awaitsAnswer, false))
        return;
    mButtonClicked = result;
    const std::weak_ptr<const int> alive = m_alive;
    if (const auto copy = action)
        copy();
    if (alive.expired())
        return;
    if (mIsModal) {
        if (m_session)
            m_session->stop();
        return;
    }
    closeWindow();
    if (!alive.expired() && mDelegateObj)
        mDelegateObj->alertDidEnd(result);
}

/// Nobody chose: the safe answer stands.
void AlertPaneWindowController::endUnanswered()
{
    if (m_session)
        m_session->stop();
    closeWindow();
}

bool AlertPaneWindowController::hasAlternate() const
{
    return hasTitle(m_alternateButton);
}

// ---- The window ---------------------------------------------------------------------------------------------

void AlertPaneWindowController::loadWindow(Form form)
{
    m_form = form;
    mAlertPanelWindow.reset(new CVAlertCenterWindow(m_surroundings.isDark));
    CVAlertCenterWindow *window = mAlertPanelWindow.get();
    if (form == Form::Plain) {
        Ui::AlertPanel ui;
        ui.setupUi(window);
        m_outlets = {window,          ui.mImageView,  ui.contentLayout,  ui.textBlock,
                     ui.mTitleString, ui.messageArea, ui.mMessageString, ui.buttonLayout};
        mOkButton = ui.mOkButton;
        mCancelButton = ui.mCancelButton;
        mOtherButton = ui.mOtherButton;
    } else {
        Ui::ReverseAlertPanel ui;
        ui.setupUi(window);
        m_outlets = {window,           ui.rAImageView, ui.contentLayout,   ui.textBlock,
                     ui.rATitleString, ui.messageArea, ui.rAMessageString, ui.buttonLayout};
        mOkButton = ui.rAOkButton;
        mCancelButton = ui.rACancelButton;
        mOtherButton = nullptr;
    }
    window->setWindowTitle(m_surroundings.productName);
    highlight(); // before the dressing: a style sheet looks at properties when it is applied
    window->dress();
    window->returnPressed = [this] { mOkButton->click(); };
    window->escapePressed = [this] { (hasAlternate() ? mCancelButton : mOkButton)->click(); };
    window->closed = [this] { endUnanswered(); };
    m_outlets.messageArea->viewport()->setAutoFillBackground(false);
    m_outlets.message->setAutoFillBackground(false);
    setTitles();
}

void AlertPaneWindowController::setTitles()
{
    const std::pair<QPushButton *, const Title &> buttons[] = {
        {mOkButton, m_defaultButton}, {mCancelButton, m_alternateButton}, {mOtherButton, m_otherButton}};
    for (const auto &[button, title] : buttons) {
        if (!button)
            continue;
        button->setVisible(hasTitle(title));
        if (hasTitle(title))
            AlertWindowLayout::setTitle(*button, *title);
        QObject::connect(button, &QPushButton::clicked, mAlertPanelWindow.get(), [this, sender = button] {
            m_form == Form::Plain ? buttonClicked(sender) : reverseAlertButtonClicked(sender);
        });
    }
}

void AlertPaneWindowController::setImage()
{
    QLabel *view = m_outlets.image;
    const QIcon icon(m_surroundings.iconFile);
    m_outlets.window->setWindowIcon(icon);
    if (view->pixmap().isNull())
        view->setPixmap(icon.pixmap(view->maximumSize(), m_outlets.window->devicePixelRatioF()));
    view->setHidden(view->pixmap().isNull());
}

void AlertPaneWindowController::setTexts(const QString &message, const QString &title)
{
    constexpr int MaxTitleLines = 3;
    m_outlets.title->setHidden(title.isEmpty());
    m_outlets.title->showText(title, MaxTitleLines);
    m_outlets.messageArea->setHidden(message.isEmpty());
    setMessage(message);
}

void AlertPaneWindowController::setMessage(const QString &message)
{
    const QString english = QString::fromUtf8(AlertPanel::permissionsSentence);
    auto link = AlertRules::linkIn(message, AlertPanel::permissionsWarning, AlertPanel::learnMore);
    if (!link)
        link = AlertRules::linkIn(message, english, u"Learn more"_s);
    if (!link)
        return m_outlets.message->showText(message);
    m_outlets.message->showTextWithLink(message, *link, [this] {
        m_surroundings.openUrl(AlertRules::permissionsHelpPage(m_surroundings.publicWebHost));
    });
}

void AlertPaneWindowController::highlight()
{
    QPushButton *accent = isNoButtonHighlighted && hasAlternate() ? mCancelButton : mOkButton;
    accent->setProperty("accent", true);
    accent->setFocus();
}
