#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QVariant>

/// A home of its own for one test: $HOME while the object lives, gone with all that is in it afterwards.
class TemporaryHome
{
public:
    TemporaryHome();
    ~TemporaryHome();

    [[nodiscard]] QString path(const QString &relative) const { return m_folder.filePath(relative); }

    /// Writes a file at an absolute path, or below the home, with the folders that it needs.
    void write(const QString &path, const QByteArray &bytes) const;
    void writeList(const QString &path, const QVariant &list) const;
    /// The whole content of such a file; a null array where there is none.
    [[nodiscard]] QByteArray read(const QString &path) const;

private:
    [[nodiscard]] QString absolute(const QString &path) const;

    QTemporaryDir m_folder;
    QByteArray m_oldHome;
};
