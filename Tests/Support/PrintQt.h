#pragma once

#include <QString>

#include <ostream>

// How GoogleTest shows texts.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
