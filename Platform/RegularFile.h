#pragma once

#include "Platform/Descriptor.h"

#include <QByteArray>
#include <QString>

#include <optional>

#include <sys/stat.h>

/// A regular file that was opened to be read. Whatever else stands at a path is never opened: opening a pipe
/// would wait for its writer, and some devices act when they are opened.
class RegularFile
{
public:
    /// By an absolute path; links are followed. Failed with the error number of the system, EINVAL for what is
    /// no regular file.
    [[nodiscard]] static RegularFile open(const QString &path);
    /// The same for an entry of an open folder that is the file itself, not a link to one.
    [[nodiscard]] static RegularFile openEntry(int folder, const QByteArray &name);

    [[nodiscard]] explicit operator bool() const { return m_error == 0; }
    [[nodiscard]] int error() const { return m_error; } ///< 0 where the file is open
    [[nodiscard]] const Descriptor &descriptor() const { return m_descriptor; }
    [[nodiscard]] const struct stat &facts() const { return m_facts; } ///< as they were at the opening
    [[nodiscard]] qint64 size() const { return m_facts.st_size; }      ///< in bytes, as it was then

    /// Its first bytes, `limit` at most, however large it is; none when reading fails. Moves no other reader.
    [[nodiscard]] std::optional<QByteArray> beginning(qsizetype limit) const;

private:
    [[nodiscard]] static RegularFile openAt(int folder, const QByteArray &path, int linkFlag);

    Descriptor m_descriptor;
    struct stat m_facts = {};
    int m_error = 0;
};
