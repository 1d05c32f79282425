#pragma once

#include <QByteArray>

#include <span>
#include <vector>

/// Puts a binary property list together, object after object. A collection is added behind what it holds.
class BinaryPlistWriter
{
public:
    /// The place of an object among all of them.
    using Reference = quint32;

    BinaryPlistWriter();

    Reference addBoolean(bool value);
    Reference addInteger(qint64 value);
    Reference addUnsigned(quint64 value);
    Reference addReal(double value);
    Reference addDate(double secondsSince2001);
    Reference addData(QByteArrayView bytes);
    Reference addText(QByteArrayView utf8);
    Reference addArray(std::span<const Reference> entries);
    /// As many values as keys, in the same order.
    Reference addDictionary(std::span<const Reference> keys, std::span<const Reference> values);

    /// The whole list; nothing can be added to it any more.
    [[nodiscard]] QByteArray finish(Reference root);

private:
    Reference begin(quint8 marker);
    Reference beginSized(quint8 type, quint64 length);
    template<typename Number>
    void append(Number value);
    void appendAll(std::span<const quint32> numbers);

    QByteArray m_bytes;
    std::vector<quint32> m_offsets;
};
