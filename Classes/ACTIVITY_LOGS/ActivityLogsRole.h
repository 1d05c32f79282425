#pragma once

#include "Classes/ACTIVITY_LOGS/LogLinks.h"

#include <QString>

#include <optional>

/// A question to the user. Without an alternate button it only tells something.
struct LogQuestion {
    QString title; ///< empty for the usual one
    QString text;
    QString defaultButton;
    QString alternateButton;
};

/// What the viewer of the activity logs asks of the program around it, besides what its links do.
class ActivityLogsRole : public LogLinkRole
{
public:
    /// The backup account of the last sign-in.
    [[nodiscard]] virtual std::optional<QString> lastLoggedInUser() const = 0;
    /// Asks with an alert and waits for the answer, while the rest of the program goes on: true for the default
    /// button. Closing the alert is the alternate one.
    [[nodiscard]] virtual bool ask(const LogQuestion &question) = 0;
    /// Records of jobs that ran have gone; CVActivityLogsViewController::takeInProgressOperations() has them.
    virtual void inProgressLogsWereRemoved() = 0;
};
