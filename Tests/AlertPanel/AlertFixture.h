#pragma once

#include "Classes/AlertPanel/AlertLabel.h"
#include "Classes/AlertPanel/AlertPaneWindowController.h"
#include "Classes/AlertPanel/CVAlertCenterWindow.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/WaitUntil.h"

#include <QApplication>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

/// Alerts in a program whose desktop is told to be light or dark and whose browser writes down what it opens.
class AlertFixture : public testing::Test, public AlertPaneWindowControllerDelegateProtocol, public AlertRole
{
protected:
    using Alert = AlertPaneWindowController;

    void alertDidEnd(int result) override { told.append(result); }
    void alertWindowDidClose() override { ++closings; }

    /// The one alert on the screen.
    static CVAlertCenterWindow *shown()
    {
        QList<CVAlertCenterWindow *> found;
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *window = dynamic_cast<CVAlertCenterWindow *>(widget); window && window->isVisible())
                found.append(window);
        EXPECT_LE(found.size(), 1) << "one alert at a time";
        return found.value(0);
    }

    template<class Widget>
    static Widget *outlet(const char *name)
    {
        return shown() ? shown()->findChild<Widget *>(QLatin1StringView(name)) : nullptr;
    }
    static QPushButton *button(const char *name) { return outlet<QPushButton>(name); }

    /// Does `deed` once the event loop of the next modal alert turns.
    static void then(std::function<void()> deed) { QTimer::singleShot(0, std::move(deed)); }
    static void click(const char *name) { QTest::mouseClick(button(name), Qt::LeftButton); }
    /// A key where the focus is.
    static void press(Qt::Key key)
    {
        ASSERT_NE(shown(), nullptr);
        QWidget *focus = shown()->focusWidget();
        QTest::keyClick(focus ? focus : shown(), key);
    }

    bool dark = false;
    QList<QUrl> opened;
    QList<int> told;
    int closings = 0;
    const AlertSurroundings surroundings{
        .isDark = [this] { return dark; },
        .openUrl = [this](const QUrl &url) { opened.append(url); },
        .publicWebHost = QStringLiteral("https://www.corvane.example"),
        .productName = QStringLiteral("Corvane"),
    };
    const QString yes = QStringLiteral("Yes");
    const QString no = QStringLiteral("No");
    const QString other = QStringLiteral("Later");
    const QString text = QStringLiteral("Are you sure?");
};
