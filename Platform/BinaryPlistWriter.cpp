#include "Platform/BinaryPlistWriter.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <bit>

namespace
{
constexpr quint8 MarkerFalse = 0x08;
constexpr quint8 MarkerTrue = 0x09;
constexpr quint8 MarkerInteger64 = 0x13;
constexpr quint8 MarkerInteger128 = 0x14;
constexpr quint8 MarkerReal64 = 0x23;
constexpr quint8 MarkerDate = 0x33;
constexpr quint8 TypeData = 0x40;
constexpr quint8 TypeAscii = 0x50;
constexpr quint8 TypeUtf16 = 0x60;
constexpr quint8 TypeArray = 0xA0;
constexpr quint8 TypeDictionary = 0xD0;
constexpr quint8 LengthFollows = 0x0F;
} // namespace

BinaryPlistWriter::BinaryPlistWriter() : m_bytes("bplist00")
{
}

template<typename Number>
void BinaryPlistWriter::append(Number value)
{
    const auto big = qToBigEndian(value);
    m_bytes.append(reinterpret_cast<const char *>(&big), sizeof big);
}

void BinaryPlistWriter::appendAll(std::span<const quint32> numbers)
{
    for (const auto number : numbers)
        append(number);
}

BinaryPlistWriter::Reference BinaryPlistWriter::begin(quint8 marker)
{
    m_offsets.push_back(quint32(m_bytes.size()));
    append(marker);
    return Reference(m_offsets.size() - 1);
}

BinaryPlistWriter::Reference BinaryPlistWriter::beginSized(quint8 type, quint64 length)
{
    if (length < LengthFollows)
        return begin(quint8(type | length));
    const auto object = begin(type | LengthFollows);
    append(MarkerInteger64);
    append(length);
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addBoolean(bool value)
{
    return begin(value ? MarkerTrue : MarkerFalse);
}

BinaryPlistWriter::Reference BinaryPlistWriter::addInteger(qint64 value)
{
    const auto object = begin(MarkerInteger64);
    append(value);
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addUnsigned(quint64 value)
{
    const auto object = begin(MarkerInteger128); // eight bytes have a sign
    append(quint64(0));
    append(value);
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addReal(double value)
{
    const auto object = begin(MarkerReal64);
    append(std::bit_cast<quint64>(value));
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addDate(double secondsSince2001)
{
    const auto object = begin(MarkerDate);
    append(std::bit_cast<quint64>(secondsSince2001));
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addData(QByteArrayView bytes)
{
    const auto object = beginSized(TypeData, quint64(bytes.size()));
    m_bytes.append(bytes);
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addText(QByteArrayView utf8)
{
    if (std::all_of(utf8.begin(), utf8.end(), [](char c) { return quint8(c) < 0x80; })) {
        const auto object = beginSized(TypeAscii, quint64(utf8.size()));
        m_bytes.append(utf8);
        return object;
    }
    // A text may begin with a byte order mark, which QString::fromUtf8() would drop.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder.decode(utf8);
    const auto object = beginSized(TypeUtf16, quint64(text.size()));
    const auto start = m_bytes.size();
    m_bytes.resize(start + 2 * text.size());
    qToBigEndian<char16_t>(text.utf16(), text.size(), m_bytes.data() + start);
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addArray(std::span<const Reference> entries)
{
    const auto object = beginSized(TypeArray, entries.size());
    appendAll(entries);
    return object;
}

BinaryPlistWriter::Reference BinaryPlistWriter::addDictionary(std::span<const Reference> keys,
                                                              std::span<const Reference> values)
{
    const auto object = beginSized(TypeDictionary, keys.size());
    appendAll(keys);
    appendAll(values);
    return object;
}

QByteArray BinaryPlistWriter::finish(Reference root)
{
    const auto table = quint64(m_bytes.size());
    appendAll(m_offsets);
    m_bytes.append(6, '\0');
    append(quint8(sizeof(quint32))); // of an offset
    append(quint8(sizeof(Reference)));
    append(quint64(m_offsets.size()));
    append(quint64(root));
    append(table);
    return std::move(m_bytes);
}
