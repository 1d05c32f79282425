#pragma once

#include "Classes/ACTIVITY_LOGS/CVActivityLogsWindowController.h"
#include "Platform/Clock.h"
#include "Source/Controller/DesktopActions.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

class Account;
class Launcher;
class Updater;

/// The activity logs as the start, the menu, announcements and the daemon ask for them. Main thread only.
class LogViewer : private ActivityLogsRole
{
public:
    /// Who is asked and who acts.
    struct Others {
        const Account &account;
        Launcher &launcher;
        Updater &updater;
        const DesktopActions &desktop;
    };

    struct Surroundings {
        Clock &clock;
        QString publicWebHost;        ///< of the pages of help
        std::function<bool()> isDark; ///< how the desktop's windows look
        /// inProgressOperations() has something to give.
        std::function<void()> inProgressLogsWereRemoved;
    };

    LogViewer(Surroundings surroundings, Others others);

    /// Has the logs of the past week read. Nothing else here is called before.
    void start();

    /// @name What brings the window up
    /// @{
    void viewSessionLog();                          ///< the period that was chosen last
    void launchActivityLogs(const QString &object); ///< an announcement; only "ActivityLogs" does
    /// Does what the flag files in the product's folder ask for, each once.
    void shouldShowLogView();
    /// @}

    /// A job has written its record: reads the chosen period anew, whether or not there is a window. The
    /// archive has none of it, and stays.
    void displayLogs();
    void userDidChange(); ///< a sign-in, or a sign-out
    /// An order from the web, with the texts `logFile` and `operation`; without both it does nothing.
    void deleteLog(const QVariantMap &order);
    void refreshColours() { m_window.refreshColours(); } ///< the desktop's windows look otherwise

    /// @name The daemon's channel
    /// @{
    /// The session logs of the records that went since the time before, for the daemon to take up those of them
    /// whose jobs run.
    [[nodiscard]] QStringList inProgressOperations();
    void daemonDidConnect();
    void daemonDidDisconnect();
    /// @}

private:
    // ActivityLogsRole
    [[nodiscard]] std::optional<QString> lastLoggedInUser() const override;
    [[nodiscard]] bool ask(const LogQuestion &question) override;
    void inProgressLogsWereRemoved() override { m_inProgressLogsWereRemoved(); }
    void initiateLaunchCorvaneApp(const QString &launchRedirectionType) override;
    void presentFullDiskAccessWindow() override;
    void openUrl(const QUrl &address) override;
    void openPlainText(const QString &path) override;

    [[nodiscard]] CVActivityLogsViewController &logs() { return m_window.viewController(); }

    Others m_others;
    std::function<void()> m_inProgressLogsWereRemoved;
    CVActivityLogsWindowController m_window;
};
