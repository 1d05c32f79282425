#include "Classes/ACTIVITY_LOGS/LogLinks.h"

using namespace Qt::StringLiterals;

void LogLinks::open(const LogLink &link, LogLinkRole &role)
{
    switch (link.kind) {
    case LogLink::Kind::EntireLog:
        return role.openPlainText(link.target);
    case LogLink::Kind::Preferences:
        return role.initiateLaunchCorvaneApp(u"Settings"_s);
    case LogLink::Kind::Scheduler:
        return role.initiateLaunchCorvaneApp(u"ViewScheduleJobs"_s);
    case LogLink::Kind::Faq:
        return role.openUrl(QUrl(link.target, QUrl::StrictMode));
    case LogLink::Kind::DiskAccess:
        return role.presentFullDiskAccessWindow();
    }
}
