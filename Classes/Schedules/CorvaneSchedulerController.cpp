#include "Classes/Schedules/CorvaneSchedulerController.h"

#include "Classes/Schedules/ScheduleRules.h"

using namespace Qt::StringLiterals;

namespace
{
std::shared_ptr<const ScheduleRecords> readStore(const QString &path)
{
    auto records = contentsOfArchivedFile(path, "Schedules"_L1);
    return records ? std::make_shared<const ScheduleRecords>(std::move(*records)) : nullptr;
}

std::optional<CorvaneScheduleItem> copied(const CorvaneScheduleItem *item)
{
    return item ? std::optional(*item) : std::nullopt;
}
} // namespace

CorvaneSchedulerController::CorvaneSchedulerController() : m_store(readStore)
{
}

std::shared_ptr<const ScheduleRecords> CorvaneSchedulerController::corvaneSchedulerDetailsForAllUsers()
{
    const auto path = mainController ? mainController->schedulerSettingsFile() : std::nullopt;
    auto records = m_store.read(path.value_or(QString()));
    return records ? records : m_noRecords;
}

std::optional<CorvaneScheduleItem> CorvaneSchedulerController::nextScheduledItem()
{
    const auto records = corvaneSchedulerDetailsForAllUsers();
    if (records->empty())
        return std::nullopt;
    const ScheduleOwner owner{mainController->consoleUser(), mainController->lastLoggedInUser()};
    return copied(::nextScheduledItem(*records, mainController->now(), owner));
}

std::optional<CorvaneScheduleItem> CorvaneSchedulerController::getImmediateScheduledItem()
{
    return copied(immediateScheduledItem(*corvaneSchedulerDetailsForAllUsers()));
}

std::vector<CorvaneScheduleItem> CorvaneSchedulerController::corvaneSchedulerDetails(const QString &user)
{
    return schedulesOfUser(*corvaneSchedulerDetailsForAllUsers(), user);
}

bool CorvaneSchedulerController::isScheduleBackupInProgress()
{
    const auto records = corvaneSchedulerDetailsForAllUsers();
    if (records->empty()) {
        currentscheduleuser = QString();
        return false;
    }
    const auto *running = runningScheduledItem(*records);
    if (!running)
        return false;
    currentscheduleuser = scheduleAccount(*running, mainController->isTQL());
    currentScheduleType = running->scheduleType;
    return true;
}

bool CorvaneSchedulerController::checkforAnyScheduledJob(const QString &account)
{
    const auto records = corvaneSchedulerDetailsForAllUsers();
    return !records->empty() && hasOnlineBackup(*records, {mainController->consoleUser(), account});
}
