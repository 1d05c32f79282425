#include "Platform/BinaryPlist.h"

#include <QtEndian>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace
{
using Kind = PlistValue::Kind;

constexpr QByteArrayView Magic("bplist0");
constexpr qsizetype HeaderBytes = 8;
constexpr qsizetype TrailerBytes = 32;

quint64 bigEndian(const uchar *bytes, unsigned width)
{
    switch (width) {
    case 1:
        return *bytes;
    case 2:
        return qFromBigEndian<quint16>(bytes);
    case 4:
        return qFromBigEndian<quint32>(bytes);
    case 8:
        return qFromBigEndian<quint64>(bytes);
    default: {
        quint64 value = 0;
        for (unsigned i = 0; i < width; ++i)
            value = value << 8 | bytes[i];
        return value;
    }
    }
}

bool isWidth(unsigned bytes)
{
    return bytes >= 1 && bytes <= 8;
}
} // namespace

bool BinaryPlist::hasMagic(QByteArrayView bytes)
{
    return bytes.startsWith(Magic);
}

std::optional<BinaryPlist> BinaryPlist::open(QByteArray bytes)
{
    if (!hasMagic(bytes) || bytes.size() < HeaderBytes + TrailerBytes)
        return std::nullopt;
    BinaryPlist list;
    list.m_bytes = std::move(bytes);
    list.m_objects = reinterpret_cast<const uchar *>(list.m_bytes.constData());

    const quint64 body = quint64(list.m_bytes.size() - TrailerBytes);
    const uchar *trailer = list.m_objects + body;
    list.m_offsetBytes = trailer[6];
    list.m_referenceBytes = trailer[7];
    list.m_count = bigEndian(trailer + 8, 8);
    list.m_root = bigEndian(trailer + 16, 8);
    const quint64 table = bigEndian(trailer + 24, 8);

    if (!isWidth(list.m_offsetBytes) || !isWidth(list.m_referenceBytes) || list.m_root >= list.m_count)
        return std::nullopt;
    if (table < quint64(HeaderBytes) || table > body || list.m_count > (body - table) / list.m_offsetBytes)
        return std::nullopt;
    list.m_table = list.m_objects + table;
    return list;
}

/// A marker whose low half is the length, or 0xF before an integer object that holds it.
PlistValue BinaryPlist::sized(Kind kind, const uchar *marker, unsigned unitBytes) const
{
    const uchar *body = marker + 1;
    quint64 length = *marker & 0x0F;
    if (length == 0x0F) {
        if (body >= m_table || (*body & 0xF0) != 0x10 || (*body & 0x0F) > 3)
            return {};
        const unsigned width = 1U << (*body & 0x0F);
        if (quint64(m_table - body - 1) < width)
            return {};
        length = bigEndian(body + 1, width);
        body += 1 + width;
    }
    if (length > quint64(m_table - body) / unitBytes)
        return {};
    return {kind, body, length};
}

PlistValue BinaryPlist::at(quint64 reference) const
{
    if (reference >= m_count)
        return {};
    const quint64 offset = bigEndian(m_table + reference * m_offsetBytes, m_offsetBytes);
    if (offset < quint64(HeaderBytes) || offset >= quint64(m_table - m_objects))
        return {};
    const uchar *marker = m_objects + offset;
    const quint64 room = quint64(m_table - marker) - 1;
    const unsigned low = *marker & 0x0F;
    const auto scalar = [&](Kind kind, quint64 width) {
        return width <= room ? PlistValue{kind, marker + 1, width} : PlistValue{};
    };

    switch (*marker >> 4) {
    case 0x0:
        if (low == 0x0)
            return {Kind::Null, marker, 0};
        return low == 0x8 || low == 0x9 ? PlistValue{Kind::Boolean, marker, 1} : PlistValue{};
    case 0x1:
        return low <= 4 ? scalar(Kind::Integer, quint64(1) << low) : PlistValue{};
    case 0x2:
        return low == 2 || low == 3 ? scalar(Kind::Real, quint64(1) << low) : PlistValue{};
    case 0x3:
        return low == 3 ? scalar(Kind::Date, 8) : PlistValue{};
    case 0x4:
        return sized(Kind::Data, marker, 1);
    case 0x5:
        return sized(Kind::Ascii, marker, 1);
    case 0x6:
        return sized(Kind::Utf16, marker, 2);
    case 0x8:
        return low <= 7 ? scalar(Kind::Uid, low + 1) : PlistValue{};
    case 0xA:
    case 0xC: // a set is read as an array: its order is the file's
        return sized(Kind::Array, marker, m_referenceBytes);
    case 0xD:
        return sized(Kind::Dictionary, marker, 2 * m_referenceBytes);
    default:
        return {};
    }
}

PlistValue BinaryPlist::reference(const PlistValue &collection, quint64 slot) const
{
    return at(bigEndian(collection.body + slot * m_referenceBytes, m_referenceBytes));
}

PlistValue BinaryPlist::element(const PlistValue &array, quint64 index) const
{
    return array.kind == Kind::Array && index < array.length ? reference(array, index) : PlistValue{};
}

PlistValue BinaryPlist::keyAt(const PlistValue &dictionary, quint64 index) const
{
    if (dictionary.kind != Kind::Dictionary || index >= dictionary.length)
        return {};
    return reference(dictionary, index);
}

PlistValue BinaryPlist::valueAt(const PlistValue &dictionary, quint64 index) const
{
    if (dictionary.kind != Kind::Dictionary || index >= dictionary.length)
        return {};
    return reference(dictionary, dictionary.length + index);
}

PlistValue BinaryPlist::find(const PlistValue &dictionary, QLatin1StringView key, quint16 &hint) const
{
    if (equals(keyAt(dictionary, hint), key))
        return valueAt(dictionary, hint);
    const quint64 entries = dictionary.kind == Kind::Dictionary ? dictionary.length : 0;
    for (quint64 i = 0; i < entries; ++i) {
        if (equals(keyAt(dictionary, i), key)) {
            hint = quint16(i); // cut off in a huge dictionary: then it misses, and no more
            return valueAt(dictionary, i);
        }
    }
    return {};
}

PlistValue BinaryPlist::find(const PlistValue &dictionary, QLatin1StringView key) const
{
    quint16 nowhere = 0;
    return find(dictionary, key, nowhere);
}

bool BinaryPlist::equals(const PlistValue &text, QLatin1StringView other)
{
    if (!text.isText() || text.length != quint64(other.size()))
        return false;
    if (text.kind == Kind::Ascii)
        return std::memcmp(text.body, other.data(), size_t(other.size())) == 0;
    for (qsizetype i = 0; i < other.size(); ++i) {
        if (bigEndian(text.body + 2 * i, 2) != other[i].unicode())
            return false;
    }
    return true;
}

std::optional<QString> BinaryPlist::text(const PlistValue &value)
{
    if (value.kind == Kind::Ascii)
        return QString::fromLatin1(reinterpret_cast<const char *>(value.body), qsizetype(value.length));
    if (value.kind != Kind::Utf16)
        return std::nullopt;
    QString text(qsizetype(value.length), Qt::Uninitialized);
    qFromBigEndian<char16_t>(value.body, qsizetype(value.length), text.data());
    return text;
}

bool BinaryPlist::boolean(const PlistValue &value)
{
    return value.kind == Kind::Boolean && *value.body == 0x09;
}

std::optional<qint64> BinaryPlist::integer(const PlistValue &value)
{
    if (value.kind != Kind::Integer)
        return std::nullopt;
    if (value.length < 8) // the short forms are unsigned, the 8-byte form has a sign
        return qint64(bigEndian(value.body, unsigned(value.length)));
    const quint64 low = bigEndian(value.body + value.length - 8, 8);
    if (value.length == 16) {
        const bool negative = std::bit_cast<qint64>(low) < 0;
        const quint64 extension = negative ? std::numeric_limits<quint64>::max() : 0;
        if (bigEndian(value.body, 8) != extension)
            return std::nullopt;
    }
    return std::bit_cast<qint64>(low);
}

std::optional<quint64> BinaryPlist::unsignedInteger(const PlistValue &value)
{
    if (const auto fits = integer(value))
        return *fits >= 0 ? std::optional(quint64(*fits)) : std::nullopt;
    if (value.kind != Kind::Integer || bigEndian(value.body, 8) != 0)
        return std::nullopt;
    return bigEndian(value.body + 8, 8);
}

std::optional<double> BinaryPlist::real(const PlistValue &value)
{
    if (value.kind != Kind::Real && value.kind != Kind::Date)
        return std::nullopt;
    if (value.length == 4)
        return double(std::bit_cast<float>(qFromBigEndian<quint32>(value.body)));
    return std::bit_cast<double>(qFromBigEndian<quint64>(value.body));
}

std::optional<quint64> BinaryPlist::uid(const PlistValue &value)
{
    if (value.kind != Kind::Uid)
        return std::nullopt;
    return bigEndian(value.body, unsigned(value.length));
}

QByteArray BinaryPlist::data(const PlistValue &value)
{
    if (value.kind != Kind::Data)
        return {};
    return QByteArray(reinterpret_cast<const char *>(value.body), qsizetype(value.length));
}

std::optional<QDateTime> dateFromReferenceSeconds(double seconds)
{
    constexpr double ReferenceEpoch = 978307200; // 2001-01-01 in seconds since 1970
    constexpr double YearOne = -62135596800;
    constexpr double YearTenThousand = 253402300800;
    const double unixSeconds = seconds + ReferenceEpoch;
    if (!(unixSeconds >= YearOne && unixSeconds < YearTenThousand)) // written so that NaN is outside
        return std::nullopt;
    // To the nearest microsecond first: a written fraction such as .29 lies a hair below itself as a double.
    const double wholeSeconds = std::floor(seconds);
    const auto microseconds = qint64(std::llround((seconds - wholeSeconds) * 1e6));
    const auto milliseconds = (qint64(wholeSeconds) + qint64(ReferenceEpoch)) * 1000 + microseconds / 1000;
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}
