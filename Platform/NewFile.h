#pragma once

#include "Platform/Descriptor.h"
#include "Platform/FileResult.h"
#include "Platform/RegularFile.h"

#include <QByteArray>

#include <atomic>
#include <optional>

/// A file that is written first and named when it is whole. It never takes the place of anything. Where the
/// file system can, it has no name until then, so that a process that is killed leaves nothing behind;
/// elsewhere it is `.corvane-new-<digits>` meanwhile, and removed with this object.
class NewFile
{
public:
    /// In an open folder, which outlives the object. Mode 0600.
    explicit NewFile(int folder);
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    [[nodiscard]] int error() const { return m_error; } ///< 0 where it can be written to
    [[nodiscard]] int descriptor() const { return m_file; }

    /// Writes all bytes that the source had when it was opened, and takes over its mode and time of change.
    /// ECANCELED when `stop` was set meanwhile; ESTALE for a source that became shorter.
    FileResult fill(const RegularFile &source, const std::atomic<bool> &stop);

    /// Has the bytes reach the disk and gives the file that name. EEXIST where something has it: another name
    /// may be tried then.
    FileResult publish(const QByteArray &name);
    /// As publish(), under `stem` and `suffix`, with " (2)", " (3)" ... between them where a name is taken. The
    /// name that it got; none on failure, which `result` tells.
    std::optional<QByteArray> publishFree(const QByteArray &stem, const QByteArray &suffix, FileResult &result);

private:
    void openNamed();
    [[nodiscard]] int takeName(const QByteArray &name);
    [[nodiscard]] int renameTo(const QByteArray &name);

    const int m_folder;
    Descriptor m_file;
    QByteArray m_temporary; ///< empty while it has no name, and once it has got its own
    int m_error = 0;
    bool m_isFlushed = false;
};
