#include "Platform/ZipWriter.h"

#include <QByteArray>

#include <algorithm>
#include <utility>

#include <archive.h>
#include <archive_entry.h>
#include <dlfcn.h>

using namespace Qt::StringLiterals;

/// The functions that are used here. A program that never makes an archive neither waits for the library and
/// the six that it brings nor keeps them in memory.
struct ZipWriter::Library {
    decltype(&::archive_write_new) newArchive;
    decltype(&::archive_write_set_format_zip) setFormatZip;
    decltype(&::archive_write_set_options) setOptions;
    decltype(&::archive_write_open_fd) openDescriptor;
    decltype(&::archive_write_header) writeHeader;
    decltype(&::archive_write_data) writeData;
    decltype(&::archive_write_finish_entry) finishEntry;
    decltype(&::archive_write_close) close;
    decltype(&::archive_write_fail) fail;
    decltype(&::archive_write_free) release;
    decltype(&::archive_errno) errorNumber;
    decltype(&::archive_error_string) errorText;
    decltype(&::archive_entry_new) newEntry;
    decltype(&::archive_entry_free) releaseEntry;
    decltype(&::archive_entry_set_pathname_utf8) setName;
    decltype(&::archive_entry_set_size) setSize;
    decltype(&::archive_entry_set_filetype) setType;
    decltype(&::archive_entry_set_perm) setMode;
    decltype(&::archive_entry_set_mtime) setTime;
};

const ZipWriter::Library *ZipWriter::library()
{
    static const auto loaded = []() -> std::unique_ptr<const Library> {
        void *const handle = ::dlopen("libarchive.so.13", RTLD_NOW | RTLD_LOCAL);
        if (!handle)
            return nullptr;
        bool isWhole = true;
        const auto find = [&](auto &function, const char *name) {
            function = reinterpret_cast<std::decay_t<decltype(function)>>(::dlsym(handle, name));
            isWhole = isWhole && function;
        };
        auto found = std::make_unique<Library>();
        find(found->newArchive, "archive_write_new");
        find(found->setFormatZip, "archive_write_set_format_zip");
        find(found->setOptions, "archive_write_set_options");
        find(found->openDescriptor, "archive_write_open_fd");
        find(found->writeHeader, "archive_write_header");
        find(found->writeData, "archive_write_data");
        find(found->finishEntry, "archive_write_finish_entry");
        find(found->close, "archive_write_close");
        find(found->fail, "archive_write_fail");
        find(found->release, "archive_write_free");
        find(found->errorNumber, "archive_errno");
        find(found->errorText, "archive_error_string");
        find(found->newEntry, "archive_entry_new");
        find(found->releaseEntry, "archive_entry_free");
        find(found->setName, "archive_entry_set_pathname_utf8");
        find(found->setSize, "archive_entry_set_size");
        find(found->setType, "archive_entry_set_filetype");
        find(found->setMode, "archive_entry_set_perm");
        find(found->setTime, "archive_entry_set_mtime");
        return isWhole ? std::move(found) : nullptr;
    }();
    return loaded.get();
}

ZipWriter::ZipWriter(int descriptor) : m_library(library())
{
    if (!m_library)
        return;
    m_archive = m_library->newArchive();
    m_isOpen = m_archive && m_library->setFormatZip(m_archive) == ARCHIVE_OK &&
               m_library->setOptions(m_archive, "zip:compression=deflate,zip:hdrcharset=UTF-8") == ARCHIVE_OK &&
               m_library->openDescriptor(m_archive, descriptor) == ARCHIVE_OK;
}

ZipWriter::~ZipWriter()
{
    if (!m_archive)
        return;
    m_library->fail(m_archive); // or it would go on and close the archive
    m_library->release(m_archive);
}

FileResult ZipWriter::failure() const
{
    if (!m_archive)
        return FileResult::refused(u"libarchive cannot be loaded"_s);
    const int error = m_library->errorNumber(m_archive);
    if (error > 0)
        return FileResult::failed(error);
    const char *const text = m_library->errorText(m_archive);
    return FileResult::refused(text ? QString::fromUtf8(text) : u"the archive is not open"_s);
}

FileResult ZipWriter::add(const QString &name, const RegularFile &source, const std::atomic<bool> &stop)
{
    if (!m_isOpen)
        return failure();
    constexpr mode_t Permissions = 0777;
    const std::unique_ptr<archive_entry, decltype(&::archive_entry_free)> entry(m_library->newEntry(),
                                                                                m_library->releaseEntry);
    if (!entry)
        return FileResult::failed(ENOMEM);
    m_library->setName(entry.get(), name.toUtf8().constData());
    m_library->setSize(entry.get(), source.size());
    m_library->setType(entry.get(), AE_IFREG);
    m_library->setMode(entry.get(), source.facts().st_mode & Permissions);
    m_library->setTime(entry.get(), source.facts().st_mtim.tv_sec, source.facts().st_mtim.tv_nsec);
    FileResult result =
        m_library->writeHeader(m_archive, entry.get()) == ARCHIVE_OK ? addBytes(source, stop) : failure();
    if (result && m_library->finishEntry(m_archive) != ARCHIVE_OK)
        result = failure();
    m_isOpen = bool(result);
    return result;
}

FileResult ZipWriter::addBytes(const RegularFile &source, const std::atomic<bool> &stop)
{
    constexpr qint64 Step = 128 * 1024;
    QByteArray buffer(Step, Qt::Uninitialized);
    for (qint64 left = source.size(); left > 0;) {
        if (stop)
            return FileResult::failed(ECANCELED);
        const ssize_t got = uninterrupted([&] {
            return ::pread(source.descriptor(), buffer.data(), std::size_t(std::min(left, Step)),
                           source.size() - left);
        });
        if (got <= 0)
            return FileResult::failed(got < 0 ? errno : ESTALE);
        if (m_library->writeData(m_archive, buffer.constData(), std::size_t(got)) != got)
            return failure();
        left -= got;
    }
    return {};
}

FileResult ZipWriter::finish()
{
    if (!m_isOpen)
        return failure();
    m_isOpen = false;
    return m_library->close(m_archive) == ARCHIVE_OK ? FileResult() : failure();
}
