#pragma once

#include "Classes/ACTIVITY_LOGS/LogTableView.h"

#include <QByteArray>
#include <QVariant>

#include <optional>
#include <vector>

class UserDefaults;

/// How the window stood, kept in the user defaults under keys that begin with `CVActivityLogs`. Whatever stands
/// there that is of no use is left out.
struct LogWindowSettings {
    QByteArray frame;                    ///< as QWidget keeps it; empty for none
    std::vector<LogColumnWidth> columns; ///< from the left, each once; empty for none
    int listPercent = 0;                 ///< of the height, what the list has above the texts; 0 for none

    [[nodiscard]] static LogWindowSettings load(const UserDefaults &defaults);
    /// Writes what has changed. A failure is traced.
    void save(UserDefaults &defaults) const;

    [[nodiscard]] static std::vector<LogColumnWidth> columnsOf(const QVariant &stored);
    friend bool operator==(const LogWindowSettings &, const LogWindowSettings &) = default;
};
