#pragma once

#include "Platform/FileResult.h"

#include <QByteArrayList>

#include <atomic>

/// Moves an entry of one open folder into another under a name that nothing has there: EEXIST where something
/// does, and both stay. To another file system a file is copied, and removed when the copy is on the disk; a
/// folder goes entry by entry, and what can't go stays where it was. Links and other special files never leave
/// their file system. ECANCELED when `stop` was set meanwhile.
FileResult moveEntry(int fromFolder, const QByteArray &name, int toFolder, const QByteArray &newName,
                     const std::atomic<bool> &stop);

/// The names in a folder but for "." and "..", in no order; empty where it can't be listed. At most `limit`.
[[nodiscard]] QByteArrayList entriesOf(int folder, qsizetype limit);
