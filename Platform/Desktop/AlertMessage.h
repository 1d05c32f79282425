#pragma once

#include <QString>

#include <functional>
#include <memory>

/// A plain window with the application's icon, one text and one button that closes it. It doesn't hold up what
/// goes on; there is one at a time, and a new message takes its place. Main thread only.
class AlertMessage
{
public:
    /// `isDark` says at each showing how the desktop looks.
    explicit AlertMessage(std::function<bool()> isDark);
    ~AlertMessage();

    struct Content {
        QString title;
        QString text; ///< plain
        QString buttonTitle;
        QString iconFile; ///< of the application; the window stands without one when it is no image
    };

    /// Shows the window and brings the application to the front.
    void show(const Content &content);
    [[nodiscard]] bool isShown() const;

    /// Takes the desktop's colours anew, when it has become light or dark while the window stands.
    void refreshColours();

private:
    class Window;

    std::function<bool()> m_isDark;
    std::unique_ptr<Window> m_window;
};
