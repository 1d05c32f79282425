#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <stop_token>

/// A day's records as a file: UTF-8, each line with its line feed, a tab before each value.
///
///     <?xml version="1.0" encoding="utf-8"?>
///     <records>
///     <record>
///         <datetime>…</datetime> and uname, files, filesinsync, status, duration, content, optype, lpath,
///         logfile, logname, in this order
///     </record>
///     </records>
///
/// Order and form matter to no reader. Elements of other names are passed over.
namespace DayFile
{
/// The records in their order; of those that share `optype` and `datetime` only the first. None for bytes that
/// are not well-formed, hold a document type or pass a limit (Limits::DayFileBytes and those beside it), which
/// `reason` then tells in a few words for a trace. None, without a reason, once `stop` is asked for. Each
/// record is a day's: `dayKey`, the base name of the file.
///
/// From any thread. May ask the file system whether a session log stands.
[[nodiscard]] std::optional<LogNodes> read(QByteArrayView bytes, const QString &dayKey,
                                           const std::stop_token &stop = {}, QString *reason = nullptr);

/// The text of a file that holds these records. What XML can't hold is left out of it, so that it can be read.
[[nodiscard]] QString getXMLfromNodes(const LogNodes &nodes);
} // namespace DayFile
