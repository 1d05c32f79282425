#pragma once

/// The alert's view of the central controller.
class AlertRole
{
public:
    virtual ~AlertRole() = default;
    /// The alert's window has gone from the screen, whatever took it away but the end of the alert object.
    virtual void alertWindowDidClose() = 0;
};
