#pragma once

#include "Platform/Limits.h"

#include <QString>
#include <QVariant>

#include <optional>

/// Small files that are asked for again and again: each is opened only when it may have changed since the time
/// before, which its stamp tells. What is read is always what the file holds now. Safe from any thread.
namespace KeptFiles
{
/// As PropertyList::readDictionary().
[[nodiscard]] std::optional<QVariantMap> dictionary(const QString &path, qint64 limit = Limits::RecordBytes);
/// As AtomicFile::readText().
[[nodiscard]] std::optional<QString> text(const QString &path);
} // namespace KeptFiles
