#include "Classes/AlertPanel/CVAlertCenterWindow.h"

#include "Platform/Desktop/WindowLook.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>

CVAlertCenterWindow::CVAlertCenterWindow(std::function<bool()> isDark) : m_isDark(std::move(isDark))
{
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setAttribute(Qt::WA_QuitOnClose, false);
}

void CVAlertCenterWindow::dress()
{
    WindowLook::apply(*this, m_isDark());
    QPalette colours = palette();
    colours.setColor(QPalette::Link, colours.color(QPalette::Highlight));
    setPalette(colours);
}

void CVAlertCenterWindow::center()
{
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    xPos = middle.x() - width() / 2;
    yPos = middle.y() - height() / 2;
}

void CVAlertCenterWindow::makeKeyAndOrderFront()
{
    move(xPos, yPos);
    show();
    raise();
    activateWindow();
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void CVAlertCenterWindow::keyPressEvent(QKeyEvent *event)
{
    // A key that was held when the window came up was meant for another one.
    if (event->isAutoRepeat())
        return;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (auto *button = qobject_cast<QAbstractButton *>(focusWidget()))
            button->click();
        else
            returnPressed();
    } else if (event->matches(QKeySequence::Cancel)) {
        escapePressed();
    }
}

void CVAlertCenterWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    closed();
}
