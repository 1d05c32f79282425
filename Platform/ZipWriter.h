#pragma once

#include "Platform/FileResult.h"
#include "Platform/RegularFile.h"

#include <QString>

#include <atomic>
#include <memory>

/// Writes a zip archive: deflated, names in UTF-8, with the wide form where sizes need it. It holds a few
/// hundred KiB however much goes through it. The library behind it is loaded by the first one that is made;
/// where there is none every call fails.
class ZipWriter
{
public:
    /// The archive goes to the place of the open descriptor, which outlives the object.
    explicit ZipWriter(int descriptor);
    /// One that was not finished leaves bytes that are no archive.
    ~ZipWriter();
    ZipWriter(const ZipWriter &) = delete;
    ZipWriter &operator=(const ZipWriter &) = delete;

    /// Adds what the file held when it was opened, under that name, with its time. ECANCELED when `stop` was
    /// set meanwhile; ESTALE for a file that became shorter. After a failure only the end is left.
    FileResult add(const QString &name, const RegularFile &source, const std::atomic<bool> &stop);
    /// Writes what closes an archive. Nothing can be added then.
    FileResult finish();

private:
    struct Library;
    [[nodiscard]] static const Library *library();
    [[nodiscard]] FileResult failure() const;
    [[nodiscard]] FileResult addBytes(const RegularFile &source, const std::atomic<bool> &stop);

    const Library *const m_library;
    struct archive *m_archive = nullptr;
    bool m_isOpen = false;
};
