#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// The settings that the application shares with the backup daemon: a dictionary from account to that account's
/// settings, in one property list. The daemon and the monitor write it too, so each operation reads it anew and
/// leaves what it does not know as it is.
class ThrottleSettings
{
public:
    explicit ThrottleSettings(QString path);

    /// Gives the account what it has no value for yet. False when the file cannot be written.
    bool fillIn(const QString &account);

    /// Sets the percent that counts at present: the one of auto-pause while that is on. False without settings
    /// of the account, or when the file cannot be written.
    bool setBandwidth(const QString &account, int percent);

    /// Switches auto-pause; false as above.
    bool setAutoPause(const QString &account, bool on);

    /// Every setting of the account in one line; empty when it has none.
    [[nodiscard]] QString describe(const QString &account) const;

private:
    [[nodiscard]] QVariantMap settingsOf(const QString &account) const;
    bool change(const QString &account, const QString &key, const QVariant &value);

    QString m_path;
};
