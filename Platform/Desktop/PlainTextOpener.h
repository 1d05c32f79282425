#pragma once

#include "Platform/Clock.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>

/// Opens files with the desktop's program for plain text, whatever their names end in; where there is none,
/// with what the desktop opens such a name with. No shell sees a name. Main thread only.
///
/// Sources: xdg-utils (`xdg-mime query default`, `xdg-open`); Desktop Entry Specification 1.5, desktop file id.
class PlainTextOpener
{
public:
    /// How long the desktop is waited for; a late answer counts as none.
    static constexpr std::chrono::seconds Patience{5};
    /// Files that are on their way; further ones are refused.
    static constexpr int MostWaiting = 8;

    /// The clock outlives the object.
    explicit PlainTextOpener(Clock &clock);
    /// What is on its way is not opened any more, and nobody is called.
    ~PlainTextOpener();
    PlainTextOpener(const PlainTextOpener &) = delete;
    PlainTextOpener &operator=(const PlainTextOpener &) = delete;

    /// Asks the desktop and starts the program. `done` gets false for what is no regular file, where too many
    /// are on their way, or no program could be started; it may be called at once.
    void open(const QString &path, std::function<void(bool isStarted)> done = {});

private:
    class Query;
    Clock &m_clock;
    QObject m_queries; ///< owns those that run
};

/// The words that start the program of that desktop entry with a file: none for a name that is no id of one, an
/// entry that is not there, or one that wants a terminal.
[[nodiscard]] QStringList wordsToOpen(const QString &desktopFileId, const QString &path);
