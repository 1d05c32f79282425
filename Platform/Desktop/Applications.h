#pragma once

#include "Platform/SessionBus/BusLink.h"

#include <QDBusMessage>
#include <QString>
#include <QStringList>

/// Other programs: brought to the front, or started.
namespace Applications
{
/// Asks the running application that owns `identifier` on the session bus to come to the front, without waiting
/// for it and without starting it. False when that isn't a bus name or there is no bus now. Source: Desktop
/// Entry Specification, D-Bus Activation (org.freedesktop.Application).
[[nodiscard]] bool activate(const QString &identifier, const BusLink &bus);

/// The message that does so.
[[nodiscard]] QDBusMessage activation(const QString &identifier);

/// The object at which an application of that identifier answers: "com.example.App-1" is at /com/example/App_1.
[[nodiscard]] QString objectPath(const QString &identifier);

/// Starts the executable at `path`, on its own and without waiting; false when it can't be started.
bool open(const QString &path, const QStringList &arguments = {});
/// The same for the first executable of that name in the search path.
bool launch(const QString &name);
} // namespace Applications
