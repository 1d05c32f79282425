#pragma once

#include <QString>

class AlertLabel;
class CVAlertCenterWindow;
class QLabel;
class QLayout;
class QPushButton;
class QScrollArea;
class QWidget;

/// The parts of an alert's window, of either form.
struct AlertOutlets {
    CVAlertCenterWindow *window = nullptr;
    QLabel *image = nullptr;
    QLayout *content = nullptr; ///< icon and texts, side by side
    QWidget *texts = nullptr;   ///< what holds title and message
    AlertLabel *title = nullptr;
    QScrollArea *messageArea = nullptr;
    AlertLabel *message = nullptr;
    QLayout *buttons = nullptr;
};

/// How an alert's window gets its size: the message has lines of about 70 Latin characters, the window the
/// height that its line count asks for, at least what its texts need, and at most most of the screen, where the
/// message scrolls.
namespace AlertWindowLayout
{
/// Gives the window, dressed and with its texts and titles set, its size for a message with that line count.
void fit(const AlertOutlets &outlets, int totalLines);

/// Gives a button its title and the width for it; a title of unusual length is shortened on the button.
void setTitle(QPushButton &button, const QString &title);
} // namespace AlertWindowLayout
