#pragma once

#include <QStringList>

/// The base names of the executables of all processes that run with this user's id, one a process. A process
/// that ends while the list is made is left out.
[[nodiscard]] QStringList runningExecutables();
