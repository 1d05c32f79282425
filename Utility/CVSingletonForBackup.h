#pragma once

/// What the whole process knows of the scheduled backup. Main thread only.
class CVSingletonForBackup
{
public:
    static CVSingletonForBackup &shared()
    {
        static CVSingletonForBackup instance;
        return instance;
    }

    bool scheduleBackupRunning = false; ///< a scheduled job is known to run
};
