// Messages of the daemons. What is known of a message is its text and its number; the rows below say what each
// number does. A row that needs a dictionary does nothing when it gets something else.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Messaging/MessageTypes.h"
#include "Messaging/MonitorMessages.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/UserRecords.h"

#include <array>

QString CorvaneMonitorController::getMessageForID(const QString &message) const
{
    return MonitorMessages::getMessageForID(
        message, MonitorMessages::bundleTable(),
        {.localise = [](const QString &text) { return text.isEmpty() ? text : localized(text); },
         .resolveSyncPath = [](const QString &tail) -> std::optional<QString> {
             const auto folders =
                 PropertyList::readDictionary(pathValue(QLatin1String("SyncFolderReferenceInfoPath"), {}));
             const auto user = UserRecords::getLastLoggedInUser();
             const auto folder =
                 folders && user ? PropertyList::textValue(*folders, user->toLower()) : std::nullopt;
             return folder ? std::optional(*folder + tail) : std::nullopt;
         }});
}

void CorvaneMonitorController::didReceiveIPCMessage(const QVariantList &message)
{
    const QString text = getMessageForID(message.value(0).toString());
    if (message.size() < 2)
        return;
    struct Row {
        int number;
        void (CorvaneMonitorController::*action)(const QVariantMap &data);
    };
    static constexpr std::array<Row, 1> Rows{{
        {MessageTypes::SetToolTip, &CorvaneMonitorController::didReceiveToolTip},
    }};
    const int number = MessageTypes::numberOf(message.at(1), text);
    for (const Row &row : Rows) {
        if (row.number == number)
            return (this->*row.action)(message.at(1).toMap());
    }
}

void CorvaneMonitorController::didReceiveToolTip(const QVariantMap &data)
{
    const auto message = PropertyList::textValue(data, QStringLiteral("message"));
    if (message)
        setStatusMenuToolTip(localized(*message), std::nullopt);
}
