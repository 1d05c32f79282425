#include "Source/Controller/Updater.h"

#include "Platform/Bundle.h"
#include "Source/Controller/Later.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/LaunchRules.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

void Updater::start()
{
    const QString marker = pathValue("UpdateOnDaemonRestart"_L1, {});
    if (QFileInfo::exists(marker)) {
        QNLogger::logMonitorTrace(u"AUTOUPDATE:Check File is available"_s);
        performAutoUpdateWithoutDateCheck();
        QNUtility::removeFile(marker);
    }
    if (!LaunchRules::versionRunsAutomaticUpdates(Bundle::main().version()))
        return;
    QNLogger::logMonitorTrace(u"AUTOUPDATE:24 Hrs check Running"_s);
    isupdaterunning = false;
    later("automaticUpdate");
    m_timer = m_clock.start(24h, Clock::Repeat::Forever, [] { later("automaticUpdate"); });
    QNUtility::removeFile(LaunchRules::rootFile(LaunchRules::LaunchHelper));
}

void Updater::remoteInstall()
{
    if (isupdaterunning)
        return;
    QNLogger::logMonitorTrace(u"remote install if condition"_s);
    later("checkforupdatewithscript");
}

void Updater::performAutoUpdateWithoutDateCheck()
{
    later("performAutoUpdateWithoutDateCheck");
}
