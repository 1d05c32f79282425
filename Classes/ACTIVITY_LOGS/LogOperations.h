#pragma once

#include <QString>

#include <optional>

/// The kinds of jobs that leave records, by the numbers that stand in the files.
namespace LogOperations
{
/// The number, as decimal text, of an operation by its English name, whatever its case; that of a sync for any
/// other name and for none.
[[nodiscard]] QString getOptypeForOperationName(const std::optional<QString> &name);

/// The operation's name in the program's language; the product's own name for a number that means none.
[[nodiscard]] std::optional<QString> getOperationNamesList(qint64 optype);

/// The same for a record's `optype`; empty where that is no number.
[[nodiscard]] QString operationName(const QString &optype);
} // namespace LogOperations
