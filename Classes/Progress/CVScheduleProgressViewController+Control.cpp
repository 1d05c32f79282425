// What the user does to the running job. The window follows at once and does not wait for the daemon, whose
// next report moves it to what was done.

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/Paths/PathTable.h"

using namespace Qt::StringLiterals;

void CVScheduleProgressViewController::SCpauseresume(JobOrder order)
{
    const bool pauses = order == JobOrder::Pause;
    const auto send = [this](const OutboundMessage &message) {
        if (mainController)
            mainController->sendData(message.message, message.tag);
    };
    // The core operation goes first; the state message only repeats it.
    if (mainController)
        mainController->sendDataToDaemonForCoreOperation(
            std::nullopt, pauses ? ECoreOperationActionType::Pause : ECoreOperationActionType::Resume);
    if (pauses) {
        receivedPauseForScheduleOperation();
        send(OutboundMessages::setPauseState());
    } else {
        resetViewAfterPauseForScheduleOperation();
        send(OutboundMessages::setResumeState());
    }
}

void CVScheduleProgressViewController::stopSchedulerSubmenu()
{
    // Everything goes on while the question stands, also the job, which may end by itself.
    const int endedJobs = m_endedJobs;
    if (m_surroundings.confirm(SchedulerProgressVC::stopSchedulerAlert) && endedJobs == m_endedJobs)
        stopAfterQuestion();
}

void CVScheduleProgressViewController::stopAfterQuestion()
{
    if (mainController)
        mainController->scheduler().isScheduleBackupStoped = true;
    const QString state = pathValue("SchedulerState"_L1, {});
    if (!state.isEmpty())
        writeTextOrTrace(state, u"3"_s);
    writeSwitchFile(ScheduleSwitch::Enabled);
    if (mainController)
        mainController->sendDataToDaemonForCoreOperation(std::nullopt, ECoreOperationActionType::Stop);
    CVSingletonForBackup::shared().scheduleBackupRunning = false;
    resumeToPause();
    closeWindow();
}
