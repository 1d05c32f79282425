#pragma once

#include "Classes/Progress/ProgressRules.h"
#include "Messaging/DaemonMessage.h"

#include <optional>

/// The figures of a report, not decoded yet. They last as long as the report is kept.
struct ReportFigures {
    ProgressRules::FieldGroup group = ProgressRules::FieldGroup::FileCounts;
    DaemonMessage::Object members;

    /// None for a report without figures.
    [[nodiscard]] static std::optional<ReportFigures> of(const DaemonMessage &report);

    /// Whether these change every field that the older ones change, so that those need not be shown where
    /// nothing else came between the two.
    [[nodiscard]] bool replace(const ReportFigures &older) const;
};
