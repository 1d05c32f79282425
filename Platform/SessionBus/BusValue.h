#pragma once

#include <QVariant>

#include <optional>

/// Values between the forms of the session bus and the plain ones of the program.
namespace BusValue
{
/// What came from the bus, with every wrapping taken off at every depth: QString, bool, numbers, QByteArray,
/// QStringList for an array of texts, QVariantList for any other array and for a structure, QVariantMap. A
/// value that has no such form, such as a descriptor, is invalid in a list and absent from a map. A text is cut
/// at Limits::MessageTextUnits and MessageTextLines, never inside a character. None over the limit of values.
[[nodiscard]] std::optional<QVariant> plain(const QVariant &received);

/// As plain(), with a QVariantList in the place of every QStringList: the form that a dispatcher takes arrays
/// in.
[[nodiscard]] std::optional<QVariantList> plainList(const QVariant &received);

/// The entries that a distributed notification can carry: QString, bool, int, QStringList, QVariantMap of the
/// same. A whole number of another width that fits becomes int, and a list of nothing but texts becomes
/// QStringList; any other entry is left out.
[[nodiscard]] QVariantMap notificationDetails(const QVariantMap &details);

/// The value in a form that the bus can carry. What has none is left out of a map and is an empty text
/// elsewhere; a date becomes ISO 8601 text in UTC.
[[nodiscard]] QVariant sendable(const QVariant &value);
} // namespace BusValue
