#pragma once

#include <QList>
#include <QString>
#include <QUrl>

/// A program that the desktop starts at login.
struct LoginItem {
    QUrl url;            ///< its executable
    bool hidden = false; ///< whether it was added to start without a window
    QString file;        ///< the desktop entry that says so
};

/// The user's login items: desktop entries in the autostart folder of the user's configuration. Stateless; the
/// folder is read at each call, in the order of file names. Entries that say `Hidden=true` count as absent, and
/// those that can't be read or start no program are passed over; neither is ever touched. Source: Desktop
/// Application Autostart Specification 0.5 of freedesktop.org.
class LoginItemRegistry
{
public:
    enum class HideIt : bool { No, Yes };

    LoginItemRegistry() = delete;

    [[nodiscard]] static QList<LoginItem> allLoginItems();

    /// Adds an item, whether or not another entry starts the same program. The entry's file is named for the
    /// path, so that adding a path again at every login replaces its own entry and nothing piles up; one that
    /// says the same already isn't written again. False when it can't be written.
    static bool addLoginItemWithPath(const QString &path, HideIt hideIt);
    static bool addLoginItemWithURL(const QUrl &url, HideIt hideIt);

    /// Removes the first item that starts the program; nothing when there is none, or no such index.
    static void removeLoginItemWithPath(const QString &path);
    static void removeLoginItemWithURL(const QUrl &url);
    static void removeLoginItemAtIndex(qsizetype index);

    /// The index in allLoginItems() of the first item that starts the program, -1 for none.
    [[nodiscard]] static qsizetype indexForLoginItemWithPath(const QString &path);
    [[nodiscard]] static qsizetype indexForLoginItemWithURL(const QUrl &url);
};
