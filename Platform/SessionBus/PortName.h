#pragma once

#include <QString>

/// Where a named port stands on the session bus, and what is called there.
namespace PortName
{
extern const QString ObjectPath;
extern const QString Interface;
extern const QString Method;    ///< didReceiveDataFromOtherProcess
extern const QString Signature; ///< of its one argument, an array of anything

/// The bus name of a port: a fixed prefix, and the port's name with every character outside [A-Za-z0-9] written
/// as "_" and two lower-case hex digits for each of its UTF-8 bytes. Empty for an empty name, and for one that
/// the bus cannot have: over 255 characters, or beginning with a digit.
[[nodiscard]] QString busName(const QString &port);
} // namespace PortName
