#include "Messaging/MessageTypes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace
{
constexpr std::array<std::pair<const char *, int>, 17> Names{{
    {"OpenDesktopNotification", MessageTypes::OpenDesktopNotification},
    {"ShowDesktopNotification", MessageTypes::ShowDesktopNotification},
    {"SetToolTip", MessageTypes::SetToolTip},
    {"PingMessage", MessageTypes::PingMessage},
    {"ScheduledBackupStatus", MessageTypes::ScheduledBackupStatus},
    {"OpenWindowforUpgrade", MessageTypes::OpenWindowforUpgrade},
    {"OpenWindowToViewFile", MessageTypes::OpenWindowToViewFile},
    {"SetPauseState", MessageTypes::SetPauseState},
    {"SetResumeState", MessageTypes::SetResumeState},
    {"SetPermisson", MessageTypes::SetPermisson},
    {"InProgressLog", MessageTypes::InProgressLog},
    {"ResetProfileUser", MessageTypes::ResetProfileUser},
    {"RemoteManage", MessageTypes::RemoteManage},
    {"logoutOnMachineDelete", MessageTypes::logoutOnMachineDelete},
    {"UpdateLoginItem", MessageTypes::UpdateLoginItem},
    {"FDAMessage", MessageTypes::FDAMessage},
    {"AutoUpdate", MessageTypes::AutoUpdate},
}};
} // namespace

std::optional<int> MessageTypes::messageEnum(const QString &name)
{
    const auto known =
        std::ranges::find_if(Names, [&](const auto &entry) { return name == QLatin1StringView(entry.first); });
    return known != Names.end() ? std::optional(known->second) : std::nullopt;
}

int MessageTypes::numberOf(const QVariant &second, const QString &name)
{
    switch (second.typeId()) {
    case QMetaType::QVariantMap:
    case QMetaType::QVariantList:
        return messageEnum(name).value_or(0);
    case QMetaType::QString:
        return second.toString().isEmpty() ? messageEnum(name).value_or(0) : second.toString().toInt();
    default:
        return 0;
    }
}
