#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The settings that hold for all programs of the session: one property list, and where it has no word, the
/// desktop's own settings.
class GlobalDomain
{
public:
    explicit GlobalDomain(QString path);

    /// `AppleLanguages`: the languages that the user prefers, best first, as BCP 47 tags; may be empty.
    [[nodiscard]] QStringList languages() const;

    /// `AppleInterfaceStyle` as the file has it, none where it has no such text. Read anew at each call.
    [[nodiscard]] std::optional<QString> interfaceStyle() const;

private:
    QString m_path;
};
