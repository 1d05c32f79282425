#pragma once

#include <QByteArray>

#include <cstddef>
#include <optional>

struct XmlPlistLimits {
    std::size_t depth = 0;
    qint64 values = 0;
};

/// The binary form of an XML property list in UTF-8; none when it is damaged, nests deeper or holds more
/// than `limits`. Takes time and memory in proportion to the bytes, whatever they are.
///
/// It reads what writers of property lists write, and that is not quite XML: their texts hold bare control
/// characters and carriage returns, which stay as they are. An encoding that is declared, attributes, a
/// document type and whatever follows the root are passed over, and no entity has a meaning but the five of
/// XML. An integer is decimal or hexadecimal, of at most 64 bits; a real or a date ends where it stops being
/// one.
[[nodiscard]] std::optional<QByteArray> binaryFromXmlPlist(QByteArrayView xml, XmlPlistLimits limits);
