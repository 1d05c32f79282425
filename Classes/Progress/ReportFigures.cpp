#include "Classes/Progress/ReportFigures.h"

using namespace Qt::StringLiterals;

namespace
{
/// Percentages by the fields that they change.
enum class Percent { None, Negative, Zero, Positive };

Percent percentOf(const DaemonMessage::Object &figures)
{
    const auto number = ProgressRules::percentage(figures.text("percentage"));
    if (!number)
        return Percent::None;
    if (*number == 0)
        return Percent::Zero;
    return *number > 0 ? Percent::Positive : Percent::Negative;
}
} // namespace

std::optional<ReportFigures> ReportFigures::of(const DaemonMessage &report)
{
    const auto members = report.object("operationData/progressData"_L1);
    if (!members)
        return std::nullopt;
    const auto type = report.integer("operationDetailedType"_L1);
    return ReportFigures{.group = ProgressRules::groupForFigures(type), .members = *members};
}

bool ReportFigures::replace(const ReportFigures &older) const
{
    return group == older.group && members.hasSameMembers(older.members) &&
           percentOf(members) == percentOf(older.members);
}
