#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

/// What the controller has done on the desktop for it; given from outside, so that it can be watched. What is
/// not given does nothing.
struct DesktopActions {
    std::function<bool()> isDark = [] { return false; };        ///< the panel
    std::function<bool()> isDesktopDark = [] { return false; }; ///< the windows
    /// Whether a panel has the status item.
    std::function<bool()> panelIsVisible = [] { return true; };
    /// Shows a text at the status item for a moment.
    std::function<void(const QString &text)> showPopover = [](const QString &) {};
    /// Shows a message window with one text.
    std::function<void(const QString &text)> showAlert = [](const QString &) {};
    /// A question to the user. An empty title, text or alternate button is left out.
    struct Question {
        QString title;
        QString text;
        QString defaultButton;
        QString alternateButton;
    };
    static constexpr int DefaultButton = 1; ///< the answer of the first button; the alternate one's is 0
    /// Asks with an alert and waits for the answer; the rest of the program goes on meanwhile.
    std::function<int(const Question &)> ask = [](const Question &) { return 0; };
    /// Has the alerts that stand take the desktop's colours anew.
    std::function<void()> refreshWindowColours = [] {};
    std::function<void(const QUrl &)> openUrl = [](const QUrl &) {};
    /// Opens a file with the desktop's program for plain text.
    std::function<void(const QString &path)> openPlainText = [](const QString &) {};
    /// Brings a running application to the front.
    std::function<void(const QString &identifier)> activateApplication = [](const QString &) {};
    /// Starts a program by its path, or by its name; false when that fails.
    std::function<bool(const QString &path)> openProgram = [](const QString &) { return false; };
    std::function<bool(const QString &name)> launchProgram = [](const QString &) { return false; };
    /// Starts a helper with arguments and doesn't wait for it.
    std::function<void(const QString &path, const QStringList &arguments)> runHelper =
        [](const QString &, const QStringList &) {};
    /// Has this program start anew when it has ended; the system's text of the error on failure.
    std::function<std::optional<QString>()> relaunch = []() -> std::optional<QString> { return std::nullopt; };
    /// Ends the program with status 0.
    std::function<void()> quit = [] {};
    /// Runs a shell command, now or after those before it, and doesn't wait for it; false when it is refused.
    std::function<bool(const QString &command)> runShell = [](const QString &) { return false; };
};
