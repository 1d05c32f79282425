#pragma once

#include "Platform/Limits.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

/// A reference into the objects of a keyed archive, the one property list type that Qt has no value for.
struct PropertyListUid {
    quint64 value = 0;
    friend bool operator==(PropertyListUid a, PropertyListUid b) { return a.value == b.value; }
};
Q_DECLARE_METATYPE(PropertyListUid)

/// Property lists, XML and binary. Types stay apart in both directions: bool, qlonglong (quint64 above its
/// range), double, QString, QByteArray, QDateTime in UTC, PropertyListUid, QVariantList, QVariantMap.
namespace PropertyList
{
enum class Format { Xml, Binary };

inline constexpr int MaxDepth = 128;
/// Of texts and data in the finished tree.
inline constexpr qint64 MaxPayloadBytes = 4 * Limits::ListBytes;

/// The list in `bytes`, whose form is told by their beginning. None when it is damaged or passes a limit;
/// `reason` then receives a few English words for a trace. Null objects inside a list become invalid variants.
[[nodiscard]] std::optional<QVariant> parse(const QByteArray &bytes, QString *reason = nullptr);

/// As parse(), from a file of at most `limit` bytes.
[[nodiscard]] std::optional<QVariant> read(const QString &path, QString *reason = nullptr,
                                           qint64 limit = Limits::RecordBytes);

/// The dictionary in a file; none when it cannot be read or its root is something else.
[[nodiscard]] std::optional<QVariantMap> readDictionary(const QString &path, QString *reason = nullptr,
                                                        qint64 limit = Limits::RecordBytes);

/// The list as bytes. None when a value has no form in a property list (an invalid variant, another type, text
/// with control characters or half a surrogate pair, a date outside the years 1 to 9999), a binary root is no
/// collection, or parse() would refuse the bytes, which is tried. XML drops fractions of a second, and so does
/// binary before 1933 and after 2068.
[[nodiscard]] std::optional<QByteArray> serialize(const QVariant &list, Format format,
                                                  QString *reason = nullptr);

/// Whether two values are the same in a list, type for type: true is not 1. Two invalid ones are.
[[nodiscard]] bool isSame(const QVariant &one, const QVariant &other);

/// The binary form of an XML list; none when it is damaged or passes a limit.
[[nodiscard]] std::optional<QByteArray> binaryFromXml(const QByteArray &bytes, QString *reason = nullptr);

/// @name Entries of a dictionary by type. A value of another type counts as missing: a boolean is no integer.
/// @{
[[nodiscard]] std::optional<QString> textValue(const QVariantMap &dictionary, const QString &key);
[[nodiscard]] std::optional<qint64> intValue(const QVariantMap &dictionary, const QString &key);
[[nodiscard]] std::optional<bool> boolValue(const QVariantMap &dictionary, const QString &key);
/// @}
} // namespace PropertyList
