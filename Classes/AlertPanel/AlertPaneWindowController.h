#pragma once

#include "Classes/AlertPanel/AlertRole.h"
#include "Classes/AlertPanel/AlertWindowLayout.h"

#include <QAbstractButton>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class ModalSession;

/// What an alert needs of the program around it. The functions are called on the main thread only.
struct AlertSurroundings {
    std::function<bool()> isDark = [] { return false; }; ///< how the desktop's windows look
    std::function<void(const QUrl &)> openUrl = [](const QUrl &) {};
    QString publicWebHost; ///< https://host[:port]
    QString iconFile;      ///< of the product; an alert stands without a picture when it is no image
    QString productName;   ///< in the title bar
};

/// Told the result of an alert that isn't modal.
class AlertPaneWindowControllerDelegateProtocol
{
public:
    virtual ~AlertPaneWindowControllerDelegateProtocol() = default;
    virtual void alertDidEnd(int result) = 0;
};

/// The application's own alert: a window with icon, title, message and up to three buttons, made for one
/// question. It comes in two forms with the same look and other numbers:
///
///     plain    first button 1, alternate 0, other -1; from the right: first, alternate, and far left the other
///     reverse  first button 0, alternate 1; from the right: alternate, first
///
/// A modal alert answers what was clicked. It answers as the alternate button, and nothing else is run, when
/// nobody chose: the next modal alert has taken its place, the window manager has closed the window, the
/// application ends, or more alerts have lost their place than may stand on each other (ModalSession). An alert
/// that has lost its place leaves the screen at once; displayMessage() returns once the one on top of it is
/// answered.
///
/// Keys: Return takes the button that has the focus, else the first; Escape the alternate one, and the first
/// where there is no alternate.
///
/// Construction, displaying and showing may be called from any thread, and so may the destructor; the other
/// members are for the main thread, or for before the showing.
class AlertPaneWindowController
{
public:
    static constexpr int FirstButton = 1;
    static constexpr int AlternateButton = 0;
    static constexpr int OtherButton = -1;
    static constexpr int ReverseFirstButton = 0;
    static constexpr int ReverseAlternateButton = 1;

    using Title = std::optional<QString>;

    /// A plain alert. A button without a title, or with an empty one, isn't shown. `delegate` may be null.
    [[nodiscard]] static std::unique_ptr<AlertPaneWindowController>
    withdefaultButton(const AlertSurroundings &surroundings, const Title &defaultButton,
                      const Title &alternateButton = {}, const Title &otherButton = {},
                      AlertPaneWindowControllerDelegateProtocol *delegate = nullptr);
    /// A reverse alert.
    [[nodiscard]] static std::unique_ptr<AlertPaneWindowController>
    reverseAlertWithDefaultButton(const AlertSurroundings &surroundings, const Title &defaultButton,
                                  const Title &alternateButton = {},
                                  AlertPaneWindowControllerDelegateProtocol *delegate = nullptr);

    /// Takes the window away; a modal alert that runs answers as if nobody had chosen. Tells nobody.
    ~AlertPaneWindowController();
    AlertPaneWindowController(const AlertPaneWindowController &) = delete;

    /// Modal: shows the alert in front, lets the program go on living, and returns the answer. Otherwise makes
    /// the window ready in the middle of the main screen and returns the alternate button's number at once: the
    /// caller shows it, by showWindow(). A text that is missing or empty is left out; both are plain text, and
    /// cut at the limits of AlertRules. On another thread it blocks until that is done.
    int displayMessage(const std::optional<QString> &message, const std::optional<QString> &title,
                       bool isModal);
    /// The same for the reverse form.
    int displayReverseAlertMessage(const std::optional<QString> &message, const std::optional<QString> &title,
                                   bool isModal);

    /// Shows an alert that isn't modal, in front; its answer goes to `yesButtonAction` and the delegate.
    void showWindow();
    [[nodiscard]] bool isWindowShown() const;

    /// A press of one of the buttons.
    void buttonClicked(const QAbstractButton *sender);
    void reverseAlertButtonClicked(const QAbstractButton *sender);

    /// Has every alert that stands take the desktop's colours anew.
    static void refreshColours();

    std::function<void()> yesButtonAction; ///< runs when a plain first button is pressed
    AlertPaneWindowControllerDelegateProtocol *mDelegateObj = nullptr; ///< outlives the alert
    AlertRole *mainController = nullptr;                               ///< outlives the alert
    int mButtonClicked = AlternateButton;                              ///< the result
    bool mIsModal = false;                                             ///< this showing is modal
    bool isNoButtonHighlighted = false; ///< the alternate button has the accent and the focus at first

private:
    enum class Form { Plain, Reverse };

    AlertPaneWindowController(const AlertSurroundings &surroundings,
                              AlertPaneWindowControllerDelegateProtocol *delegate);

    int display(Form form, const std::optional<QString> &message, const std::optional<QString> &title,
                bool isModal);
    void loadWindow(Form form);
    void setTitles();
    void setImage();
    void setTexts(const QString &message, const QString &title);
    void setMessage(const QString &message);
    void highlight();
    void showModelWindow();
    void makeReady(); ///< the safe answer stands until somebody chooses
    void showNonModalWindow();
    void closeWindow();
    void answer(int result, const std::function<void()> &action);
    void endUnanswered();
    [[nodiscard]] bool hasAlternate() const;

    AlertSurroundings m_surroundings;
    Title m_defaultButton;
    Title m_alternateButton;
    Title m_otherButton;

    struct WindowDeleter {
        void operator()(CVAlertCenterWindow *window) const;
    };
    Form m_form = Form::Plain;
    std::unique_ptr<CVAlertCenterWindow, WindowDeleter> mAlertPanelWindow; ///< of m_form; none before a display
    AlertOutlets m_outlets;
    QPushButton *mOkButton = nullptr;
    QPushButton *mCancelButton = nullptr;
    QPushButton *mOtherButton = nullptr; ///< the plain form's
    ModalSession *m_session = nullptr;   ///< while the alert is in it
    bool m_awaitsAnswer = false;
    std::shared_ptr<const int> m_alive = std::make_shared<int>(); ///< expires with the alert
};
