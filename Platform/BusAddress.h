#pragma once

#include <QByteArrayList>
#include <QString>

#include <optional>

/// Where the session bus is. A bus that takes connections and answers nothing would hold up whatever library
/// asks it something; so its address can be kept from everything in this process that looks for it by itself.
namespace BusAddress
{
/// The address of the session bus, also while it is withheld: $DBUS_SESSION_BUS_ADDRESS, or the socket of the
/// user's runtime folder. None where there is neither; a bus is never started for the asking.
[[nodiscard]] std::optional<QString> current();

/// Keeps the address from the libraries in this process, for the rest of its life. Main thread, while no other
/// thread looks at the environment.
void withhold();
[[nodiscard]] bool isWithheld();

/// The environment for programs that are started from here, "NAME=value", with the address that was given.
[[nodiscard]] QByteArrayList childEnvironment();
} // namespace BusAddress
