#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

/// The program with what stands beside it: resources in ../share/corvane-monitor/ as seen from the executable,
/// the facts of Info.plist, and one `<language>.lproj` folder for each language.
class Bundle
{
public:
    explicit Bundle(QString executablePath);

    /// The bundle of this process.
    static const Bundle &main();

    [[nodiscard]] const QString &executablePath() const { return m_executable; }
    [[nodiscard]] QString resource(const QString &relativePath) const;

    /// The folder `<language>.lproj`, where it exists.
    [[nodiscard]] std::optional<QString> localizationFolder(const QString &language) const;

    /// A text of Info.plist, none where the file or the key is missing.
    [[nodiscard]] std::optional<QString> info(const QString &key) const;
    [[nodiscard]] std::optional<QString> identifier() const;   ///< CFBundleIdentifier
    [[nodiscard]] std::optional<QString> version() const;      ///< CFBundleVersion
    [[nodiscard]] std::optional<QString> shortVersion() const; ///< CFBundleShortVersionString

private:
    QString m_executable;
    QString m_resources;
    QVariantMap m_info;
};
