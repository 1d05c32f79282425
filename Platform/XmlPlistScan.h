#pragma once

#include <QByteArray>

struct XmlPlistLimits {
    int depth = 0;
    qint64 elements = 0;
};

/// Whether the arrays and dictionaries of an XML property list open and close in step, no deeper and no more
/// numerous than `limits`, and its integers are integers of at most 64 bits. Text, comments and CDATA are
/// passed over. A parser that recurses, or takes what it cannot read for some number, can then be trusted with
/// the bytes.
[[nodiscard]] bool xmlPlistIsWellFormed(QByteArrayView xml, XmlPlistLimits limits);
