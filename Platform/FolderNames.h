#pragma once

#include "Platform/FileResult.h"

#include <QByteArray>
#include <QString>

#include <functional>

/// Calls `take` for each name in the folder, in the order of the file system, without "." and ".."; ends early
/// when that answers false. Nothing but the folder is opened. Fails where it can't be listed, a relative path
/// included; `take` may have had some names by then.
FileResult forEachNameIn(const QString &folder, const std::function<bool(const QByteArray &name)> &take);
