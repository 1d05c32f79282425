#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

/// One object of a binary property list, as it lies in the bytes. Borrowed from its BinaryPlist.
struct PlistValue {
    enum class Kind : quint8 {
        Invalid,
        Null,
        Boolean,
        Integer,
        Real,
        Date,
        Data,
        Ascii,
        Utf16,
        Uid,
        Array,
        Dictionary
    };

    Kind kind = Kind::Invalid; ///< Invalid: a reference out of range, an unknown marker, a body that is cut
    const uchar *body = nullptr;
    quint64 length =
        0; ///< bytes of a scalar, data or ASCII text; units of UTF-16 text; entries of a collection

    [[nodiscard]] bool isValid() const { return kind != Kind::Invalid; }
    [[nodiscard]] bool isText() const { return kind == Kind::Ascii || kind == Kind::Utf16; }
};

/// Random access to the objects of a binary property list ("bplist00": objects, a table of their offsets, a
/// trailer of 32 bytes; all numbers big-endian) without building a tree. Nothing is allocated but the texts
/// asked for, so shared references, cycles and deep nesting cost nothing here; whoever walks the list sets the
/// limits.
class BinaryPlist
{
public:
    /// Checks the trailer and the bounds of the table; the objects are checked as they are reached.
    [[nodiscard]] static std::optional<BinaryPlist> open(QByteArray bytes);
    [[nodiscard]] static bool hasMagic(QByteArrayView bytes);

    [[nodiscard]] PlistValue root() const { return at(m_root); }

    /// The entry of an array; Invalid past its end or for anything else.
    [[nodiscard]] PlistValue element(const PlistValue &array, quint64 index) const;
    /// Key and value of a dictionary's entry, in the order of the file.
    [[nodiscard]] PlistValue keyAt(const PlistValue &dictionary, quint64 index) const;
    [[nodiscard]] PlistValue valueAt(const PlistValue &dictionary, quint64 index) const;
    /// The value under `key`; Invalid when there is none. `hint` is the place to look first and receives the
    /// place found: dictionaries of one writer share their layout, which turns the search into one comparison.
    [[nodiscard]] PlistValue find(const PlistValue &dictionary, QLatin1StringView key, quint16 &hint) const;
    [[nodiscard]] PlistValue find(const PlistValue &dictionary, QLatin1StringView key) const;

    [[nodiscard]] static bool equals(const PlistValue &text, QLatin1StringView other);
    [[nodiscard]] static std::optional<QString> text(const PlistValue &value);
    [[nodiscard]] static bool boolean(const PlistValue &value);
    /// The integer where it fits 64 signed bits.
    [[nodiscard]] static std::optional<qint64> integer(const PlistValue &value);
    /// The integer where it is not negative and fits 64 bits.
    [[nodiscard]] static std::optional<quint64> unsignedInteger(const PlistValue &value);
    /// A real, or the seconds since 2001-01-01 UTC of a date.
    [[nodiscard]] static std::optional<double> real(const PlistValue &value);
    [[nodiscard]] static std::optional<quint64> uid(const PlistValue &value);
    [[nodiscard]] static QByteArray data(const PlistValue &value);

private:
    BinaryPlist() = default;
    PlistValue at(quint64 reference) const;
    PlistValue sized(PlistValue::Kind kind, const uchar *marker, unsigned unitBytes) const;
    PlistValue reference(const PlistValue &collection, quint64 slot) const;

    QByteArray m_bytes;
    const uchar *m_objects = nullptr; // start of the file; offsets count from here
    const uchar *m_table = nullptr;   // end of the objects
    quint64 m_count = 0;
    quint64 m_root = 0;
    unsigned m_offsetBytes = 0;
    unsigned m_referenceBytes = 0;
};

/// The moment `seconds` after 2001-01-01 UTC, in UTC, to the millisecond below; none outside the years 1 to
/// 9999.
[[nodiscard]] std::optional<QDateTime> dateFromReferenceSeconds(double seconds);
