#pragma once

#include <QDialog>

#include <functional>

/// The window of an alert. It keeps the position given in xPos and yPos at each showing, and leaves what its
/// keys and its closing mean to its owner.
class CVAlertCenterWindow : public QDialog
{
public:
    /// `isDark` says how the desktop's windows look, whenever the window is dressed.
    explicit CVAlertCenterWindow(std::function<bool()> isDark);

    int xPos = 0; ///< of the frame's top left corner on the desktop, in points
    int yPos = 0;

    std::function<void()> returnPressed; ///< where the focus is on no button and no link
    std::function<void()> escapePressed;
    std::function<void()> closed; ///< by the window manager

    /// Takes the product's look, light or dark as the desktop is now.
    void dress();

    /// Sets xPos and yPos so that the window stands in the middle of the main screen.
    void center();

    /// Shows the window, in front and active.
    void makeKeyAndOrderFront();

    void reject() override { close(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    std::function<bool()> m_isDark;
};
