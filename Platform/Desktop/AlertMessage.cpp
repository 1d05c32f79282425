#include "Platform/Desktop/AlertMessage.h"

#include "Platform/Desktop/WindowLook.h"
#include "ui_AlertMessage.h"

#include <QDialog>
#include <QIcon>
#include <QPushButton>

class AlertMessage::Window : public QDialog
{
public:
    Window()
    {
        m_ui.setupUi(this);
        setWindowFlag(Qt::WindowContextHelpButtonHint, false);
        connect(m_ui.okButton, &QPushButton::clicked, this, &QDialog::close);
    }

    void apply(const Content &content)
    {
        setWindowTitle(content.title);
        const QIcon icon(content.iconFile);
        setWindowIcon(icon);
        m_ui.iconLabel->setPixmap(icon.pixmap(m_ui.iconLabel->maximumSize(), devicePixelRatioF()));
        m_ui.messageLabel->setText(content.text);
        m_ui.okButton->setText(content.buttonTitle);
        m_ui.okButton->setAccessibleName(content.buttonTitle);
        m_ui.okButton->setFocus();
    }

private:
    Ui::AlertMessage m_ui;
};

AlertMessage::AlertMessage(std::function<bool()> isDark) : m_isDark(std::move(isDark))
{
}

AlertMessage::~AlertMessage() = default;

void AlertMessage::show(const Content &content)
{
    if (!m_window)
        m_window = std::make_unique<Window>();
    refreshColours();
    m_window->apply(content);
    m_window->adjustSize();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

bool AlertMessage::isShown() const
{
    return m_window && m_window->isVisible();
}

void AlertMessage::refreshColours()
{
    if (m_window)
        WindowLook::apply(*m_window, m_isDark());
}
