#include "Platform/MessageText.h"

#include "Platform/Limits.h"

#include <algorithm>

QString shownPart(const QString &text)
{
    qsizetype end = 0;
    for (qsizetype lines = 0; lines < Limits::MessageTextLines && end >= 0; ++lines)
        end = text.indexOf(u'\n', lines == 0 ? 0 : end + 1);
    const qsizetype size = std::min(end < 0 ? text.size() : end, Limits::MessageTextUnits);
    const bool cutsPair = size > 0 && size < text.size() && text.at(size - 1).isHighSurrogate();
    return text.left(cutsPair ? size - 1 : size);
}
