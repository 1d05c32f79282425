#pragma once

#include <QString>

/// How often the web management program stands in the list of this user's processes, of which only those whose
/// command line matches `inAppName` (as grep takes it) are looked at.
[[nodiscard]] int isApplicationRunning(const QString &inAppName);
