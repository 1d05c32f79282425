#pragma once

#include "Classes/ACTIVITY_LOGS/LogText.h"

#include <QString>
#include <QUrl>

/// What the links of a log, and the logs themselves, ask of the program around them.
class LogLinkRole
{
public:
    virtual ~LogLinkRole() = default;

    /// Sets the view that the main application is to be asked for, and opens that application:
    /// `ViewScheduleJobs` or `Settings`.
    virtual void initiateLaunchCorvaneApp(const QString &launchRedirectionType) = 0;
    virtual void presentFullDiskAccessWindow() = 0;
    virtual void openUrl(const QUrl &address) = 0;
    /// Opens a file with the desktop's program for plain text, as PlainTextOpener does.
    virtual void openPlainText(const QString &path) = 0;
};

namespace LogLinks
{
/// Carries out what a link that was pressed stands for. Its kind decides, whatever its target's name holds.
void open(const LogLink &link, LogLinkRole &role);
} // namespace LogLinks
