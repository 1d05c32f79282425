#pragma once

#include "Platform/BinaryPlist.h"

#include <QDateTime>
#include <QStringList>
#include <QVariant>

#include <array>
#include <optional>
#include <vector>

class KeyedArchive;

/// One value of a keyed archive: an object, or a plain value that stands in one. A cursor, cheap to copy, which
/// must not outlive its archive. Decoding is lenient: what is missing, damaged or of another kind gives the
/// default of the call.
class ArchiveObject
{
public:
    ArchiveObject() = default;

    /// No value: a missing key, a reference out of range, a damaged object, or the archive's null object.
    [[nodiscard]] bool isNull() const;

    /// The class that the object was archived as; empty for a plain value.
    [[nodiscard]] QString className() const;
    /// The class and its bases, the class first.
    [[nodiscard]] QStringList classChain() const;
    /// Whether `name` is the class or one of its bases.
    [[nodiscard]] bool isKindOf(QLatin1StringView name) const;

    /// @name Fields of the object, as keyed coding reads them
    /// @{
    [[nodiscard]] bool contains(QLatin1StringView key) const;
    [[nodiscard]] ArchiveObject decodeObject(QLatin1StringView key) const;
    [[nodiscard]] qint64 decodeInt(QLatin1StringView key) const; ///< 0 when missing; a boolean gives 0 or 1
    [[nodiscard]] bool
    decodeBool(QLatin1StringView key) const; ///< false when missing; a number gives "not zero"
    [[nodiscard]] std::optional<QString> decodeString(QLatin1StringView key) const;
    [[nodiscard]] std::optional<QDateTime> decodeDate(QLatin1StringView key) const; ///< UTC
    [[nodiscard]] std::optional<QVariantList> decodeList(QLatin1StringView key) const;
    /// @}

    /// @name The value itself; none when it is of another kind
    /// @{
    [[nodiscard]] std::optional<QString> text() const;    ///< plain text, NSString and its subclasses
    [[nodiscard]] std::optional<QDateTime> date() const;  ///< plain date, NSDate
    [[nodiscard]] std::optional<QByteArray> data() const; ///< plain data, NSData and its subclasses
    /// The entries of an NSArray or a subclass, in order. An entry that is null keeps its place.
    [[nodiscard]] std::optional<std::vector<ArchiveObject>> entries() const;
    /// Text, number, boolean, date, data, and arrays and dictionaries of them. Invalid for objects of other
    /// classes, and in place of whatever contains itself.
    [[nodiscard]] QVariant toVariant() const;
    /// @}

private:
    friend class KeyedArchive;
    ArchiveObject(const KeyedArchive *archive, PlistValue value) : m_archive(archive), m_value(value) {}

    PlistValue field(QLatin1StringView key) const;
    PlistValue plainField(QLatin1StringView key) const;
    PlistValue classRecord() const;
    PlistValue entryReferences(QLatin1StringView key) const;
    QVariant toVariant(int depth) const;
    QVariant dictionaryToVariant(int depth) const;

    const KeyedArchive *m_archive = nullptr;
    PlistValue m_value;
};

/// A reader of keyed archives: property lists with `$archiver` "NSKeyedArchiver", `$version` 100000, a flat
/// array
/// `$objects`, and `$top`, whose values refer into it. Nothing is decoded before it is asked for, so the cost
/// is that of the fields read. Not for use by two threads at once.
class KeyedArchive
{
public:
    /// Takes archives in the binary and in the XML form. None when the bytes are no keyed archive.
    [[nodiscard]] static std::optional<KeyedArchive> open(const QByteArray &bytes);

    /// The object that was archived under `key`; null when there is none. Cursors point into this archive.
    [[nodiscard]] ArchiveObject decodeObject(QLatin1StringView key) const;

    /// True once the archive has asked for more work or memory than any honest one of its size: references let
    /// a small file repeat a large object without end. From then on everything decodes as missing.
    [[nodiscard]] bool isExhausted() const { return m_budget <= 0; }

private:
    friend class ArchiveObject;
    explicit KeyedArchive(BinaryPlist list) : m_list(std::move(list)) {}

    PlistValue resolve(const PlistValue &value) const;
    PlistValue find(const PlistValue &dictionary, QLatin1StringView key) const;
    bool spend(quint64 cost) const;

    BinaryPlist m_list;
    PlistValue m_top;
    PlistValue m_objects;
    mutable qint64 m_budget = 0; ///< bytes handed out and keys compared that are still allowed
    /// Where a key was found last. Objects of one class share a layout, so it is there again nearly always; two
    /// keys that share a slot only cost time.
    mutable std::array<quint16, 128> m_hints{};
};
