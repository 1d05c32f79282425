<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Your Scheduled job is paused.</source>
        <translation>Your Scheduled job is paused.</translation>
    </message>
    <message>
        <source>Quota Exceeded - You have utilized the allocated storage space.</source>
        <translation>Quota Exceeded - You have utilized the allocated storage space.</translation>
    </message>
    <message>
        <source>You have exceeded the allocated</source>
        <translation>You have exceeded the allocated</translation>
    </message>
    <message>
        <source>You have exceeded the</source>
        <translation>You have exceeded the</translation>
    </message>
    <message>
        <source>Next scheduled backup will start immediately</source>
        <translation>Next scheduled backup will start immediately</translation>
    </message>
    <message>
        <source>Your next scheduled event: You have no scheduled jobs.</source>
        <translation>Your next scheduled event: You have no scheduled jobs.</translation>
    </message>
    <message>
        <source>Backup: %@
Cloud Drive: %@</source>
        <translation>Backup: %@
Cloud Drive: %@</translation>
    </message>
    <message>
        <source>Backup: %@
Cloud Drive: %@
You have exceeded the allocated quota limit. For further syncing you have to upgrade your account. Click the &apos;Upgrade Storage&apos; menu item to upgrade your %@ account</source>
        <translation>Backup: %@
Cloud Drive: %@
You have exceeded the allocated quota limit. For further syncing you have to upgrade your account. Click the &apos;Upgrade Storage&apos; menu item to upgrade your %@ account</translation>
    </message>
    <message>
        <source>%@ 
Your account has been cancelled</source>
        <translation>%@ 
Your account has been cancelled</translation>
    </message>
    <message>
        <source>Cloud Drive: All files are up to date</source>
        <translation>Cloud Drive: All files are up to date</translation>
    </message>
    <message>
        <source>Cloud Drive: All files are synced</source>
        <translation>Cloud Drive: All files are synced</translation>
    </message>
    <message>
        <source>%@ is already running, but it does not answer.</source>
        <translation>%@ is already running, but it does not answer.</translation>
    </message>
    <message>
        <source> is up-to-date</source>
        <translation> is up-to-date</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Warning! Backup operations will not work without these permissions. Learn more</source>
        <translation>Warning! Backup operations will not work without these permissions. Learn more</translation>
    </message>
    <message>
        <source>Learn more</source>
        <translation>Learn more</translation>
    </message>
    <message>
        <source>Start application</source>
        <translation>Start application</translation>
    </message>
    <message>
        <source>Access %@ web</source>
        <translation>Access %@ web</translation>
    </message>
    <message>
        <source>Access, Restore, Share files / folders, etc via Web</source>
        <translation>Access, Restore, Share files / folders, etc via Web</translation>
    </message>
    <message>
        <source>Scheduler</source>
        <translation>Scheduler</translation>
    </message>
    <message>
        <source>Upgrade storage</source>
        <translation>Upgrade storage</translation>
    </message>
    <message>
        <source>Upgrade to a higher storage plan</source>
        <translation>Upgrade to a higher storage plan</translation>
    </message>
    <message>
        <source>Show progress</source>
        <translation>Show progress</translation>
    </message>
    <message>
        <source>Proxy settings</source>
        <translation>Proxy settings</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>View logs</source>
        <translation>View logs</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Send error report</source>
        <translation>Send error report</translation>
    </message>
    <message>
        <source>Online help</source>
        <translation>Online help</translation>
    </message>
    <message>
        <source>Disable Web Access</source>
        <translation>Disable Web Access</translation>
    </message>
    <message>
        <source>Enable Web Access</source>
        <translation>Enable Web Access</translation>
    </message>
    <message>
        <source>Manage backup set, Schedule backup etc via Web</source>
        <translation>Manage backup set, Schedule backup etc via Web</translation>
    </message>
    <message>
        <source>Continuous Data Protection</source>
        <translation>Continuous Data Protection</translation>
    </message>
    <message>
        <source>Check for latest version</source>
        <translation>Check for latest version</translation>
    </message>
    <message>
        <source>Update to latest version of application</source>
        <translation>Update to latest version of application</translation>
    </message>
    <message>
        <source>Quit application monitor</source>
        <translation>Quit application monitor</translation>
    </message>
    <message>
        <source>Remote Manage</source>
        <translation>Remote Manage</translation>
    </message>
    <message>
        <source>Manage all scheduled jobs</source>
        <translation>Manage all scheduled jobs</translation>
    </message>
    <message>
        <source>Pause the scheduled job</source>
        <translation>Pause the scheduled job</translation>
    </message>
    <message>
        <source>Resume the scheduled job</source>
        <translation>Resume the scheduled job</translation>
    </message>
    <message>
        <source>Stop the scheduled job</source>
        <translation>Stop the scheduled job</translation>
    </message>
    <message>
        <source>Disable all scheduled jobs</source>
        <translation>Disable all scheduled jobs</translation>
    </message>
    <message>
        <source>Enable all scheduled jobs</source>
        <translation>Enable all scheduled jobs</translation>
    </message>
    <message>
        <source>Cloud Drive</source>
        <translation>Cloud Drive</translation>
    </message>
    <message>
        <source>My Cloud Drive folder</source>
        <translation>My Cloud Drive folder</translation>
    </message>
    <message>
        <source>View your Cloud Drive folder</source>
        <translation>View your Cloud Drive folder</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Resume</translation>
    </message>
    <message>
        <source>Recently modified items</source>
        <translation>Recently modified items</translation>
    </message>
    <message>
        <source>View files that have been recently modified</source>
        <translation>View files that have been recently modified</translation>
    </message>
    <message>
        <source>Halt the Sync operations</source>
        <translation>Halt the Sync operations</translation>
    </message>
    <message>
        <source>Sync files with linked devices</source>
        <translation>Sync files with linked devices</translation>
    </message>
    <message>
        <source>Sync Status</source>
        <translation>Sync Status</translation>
    </message>
    <message>
        <source>Re-initialize</source>
        <translation>Re-initialize</translation>
    </message>
    <message>
        <source>Scheduled Backup is in progress</source>
        <translation>Scheduled Backup is in progress</translation>
    </message>
    <message>
        <source>Scheduled Backup is Paused...</source>
        <translation>Scheduled Backup is Paused...</translation>
    </message>
    <message>
        <source>Retrying...</source>
        <translation>Retrying...</translation>
    </message>
    <message>
        <source>Elapsed Time:</source>
        <translation>Elapsed Time:</translation>
    </message>
    <message>
        <source>Estimated Time:</source>
        <translation>Estimated Time:</translation>
    </message>
    <message>
        <source>Pending Files:</source>
        <translation>Pending Files:</translation>
    </message>
    <message>
        <source>Completed Files:</source>
        <translation>Completed Files:</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source> Pause</source>
        <translation> Pause</translation>
    </message>
    <message>
        <source> Resume</source>
        <translation> Resume</translation>
    </message>
    <message>
        <source>Bandwidth usage:</source>
        <translation>Bandwidth usage:</translation>
    </message>
    <message>
        <source>Resume backup operation</source>
        <translation>Resume backup operation</translation>
    </message>
    <message>
        <source>Pause backup operation</source>
        <translation>Pause backup operation</translation>
    </message>
    <message>
        <source>Calculating...</source>
        <translation>Calculating...</translation>
    </message>
    <message>
        <source>Are you sure you wish to stop the scheduled job operation? </source>
        <translation>Are you sure you wish to stop the scheduled job operation? </translation>
    </message>
    <message>
        <source>Regulates the amount of bandwidth usage during backup operation.</source>
        <translation>Regulates the amount of bandwidth usage during backup operation.</translation>
    </message>
    <message>
        <source>You have selected Auto-Pause. This means backups may be very slow during user activity.</source>
        <translation>You have selected Auto-Pause. This means backups may be very slow during user activity.</translation>
    </message>
    <message>
        <source>All files are up to date</source>
        <translation>All files are up to date</translation>
    </message>
    <message>
        <source>Syncing %@</source>
        <translation>Syncing %@</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files</source>
        <translation>Syncing %@ of %@ files</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files, %@ left</source>
        <translation>Syncing %@ of %@ files, %@ left</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files (%@ of %@)</source>
        <translation>Syncing %@ of %@ files (%@ of %@)</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Processing</translation>
    </message>
    <message>
        <source>Processing %@</source>
        <translation>Processing %@</translation>
    </message>
    <message>
        <source>Processing %@ of %@ files</source>
        <translation>Processing %@ of %@ files</translation>
    </message>
    <message>
        <source>Preparing file list...</source>
        <translation>Preparing file list...</translation>
    </message>
    <message>
        <source>Backing up</source>
        <translation>Backing up</translation>
    </message>
    <message>
        <source>Restoring</source>
        <translation>Restoring</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Uploading</translation>
    </message>
    <message>
        <source>Uploading %@</source>
        <translation>Uploading %@</translation>
    </message>
    <message>
        <source>Uploading %@ of %@ files</source>
        <translation>Uploading %@ of %@ files</translation>
    </message>
    <message>
        <source>Uploading %@ (%@ of %@)</source>
        <translation>Uploading %@ (%@ of %@)</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Downloading</translation>
    </message>
    <message>
        <source>Downloading %@</source>
        <translation>Downloading %@</translation>
    </message>
    <message>
        <source>Downloading %@ of %@ files</source>
        <translation>Downloading %@ of %@ files</translation>
    </message>
    <message>
        <source>Downloading %@ (%@ of %@)</source>
        <translation>Downloading %@ (%@ of %@)</translation>
    </message>
    <message>
        <source>Deleting %@</source>
        <translation>Deleting %@</translation>
    </message>
    <message>
        <source>Deleting %@ of %@ files</source>
        <translation>Deleting %@ of %@ files</translation>
    </message>
    <message>
        <source>Renaming %@ to %@</source>
        <translation>Renaming %@ to %@</translation>
    </message>
    <message>
        <source>Moving</source>
        <translation>Moving</translation>
    </message>
    <message>
        <source>Moving %@</source>
        <translation>Moving %@</translation>
    </message>
    <message>
        <source>Moving %@ to %@</source>
        <translation>Moving %@ to %@</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Paused</translation>
    </message>
    <message>
        <source>Re-initializing</source>
        <translation>Re-initializing</translation>
    </message>
    <message>
        <source>Re-initializing: %@ of %@ files checked</source>
        <translation>Re-initializing: %@ of %@ files checked</translation>
    </message>
    <message>
        <source>No network connectivity</source>
        <translation>No network connectivity</translation>
    </message>
    <message>
        <source>Connecting to the server...</source>
        <translation>Connecting to the server...</translation>
    </message>
    <message>
        <source>Calculating the storage used...</source>
        <translation>Calculating the storage used...</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit. For further syncing you have to upgrade your account.</source>
        <translation>You have exceeded the allocated quota limit. For further syncing you have to upgrade your account.</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit of %@. For further syncing you have to upgrade your account.</source>
        <translation>You have exceeded the allocated quota limit of %@. For further syncing you have to upgrade your account.</translation>
    </message>
    <message>
        <source>The account has been cancelled</source>
        <translation>The account has been cancelled</translation>
    </message>
    <message>
        <source>The account is under maintenance. Syncing goes on when it is available again.</source>
        <translation>The account is under maintenance. Syncing goes on when it is available again.</translation>
    </message>
    <message>
        <source>The account has been blocked. Contact support to have it opened again.</source>
        <translation>The account has been blocked. Contact support to have it opened again.</translation>
    </message>
    <message>
        <source>The Cloud Drive folder cannot be found</source>
        <translation>The Cloud Drive folder cannot be found</translation>
    </message>
    <message>
        <source>The Cloud Drive folder %@ cannot be found</source>
        <translation>The Cloud Drive folder %@ cannot be found</translation>
    </message>
    <message>
        <source>This computer has been unlinked from Cloud Drive</source>
        <translation>This computer has been unlinked from Cloud Drive</translation>
    </message>
    <message>
        <source>Sign in again to go on syncing</source>
        <translation>Sign in again to go on syncing</translation>
    </message>
    <message>
        <source>Not enough free space on this computer</source>
        <translation>Not enough free space on this computer</translation>
    </message>
    <message>
        <source>Not enough free space on this computer: %@ more needed</source>
        <translation>Not enough free space on this computer: %@ more needed</translation>
    </message>
    <message>
        <source>%@ could not be synced</source>
        <translation>%@ could not be synced</translation>
    </message>
    <message>
        <source>%@ could not be synced: %@</source>
        <translation>%@ could not be synced: %@</translation>
    </message>
    <message>
        <source>%@ is in use and will be synced when it is closed</source>
        <translation>%@ is in use and will be synced when it is closed</translation>
    </message>
    <message>
        <source>%@ was changed in two places. Both versions have been kept.</source>
        <translation>%@ was changed in two places. Both versions have been kept.</translation>
    </message>
    <message>
        <source>%@ was also changed on %@. Both versions have been kept.</source>
        <translation>%@ was also changed on %@. Both versions have been kept.</translation>
    </message>
    <message>
        <source>The name of %@ cannot be used on all your computers</source>
        <translation>The name of %@ cannot be used on all your computers</translation>
    </message>
    <message>
        <source>You are not allowed to change %@</source>
        <translation>You are not allowed to change %@</translation>
    </message>
    <message>
        <source>Scheduled Backup is in progress.</source>
        <translation>Scheduled Backup is in progress.</translation>
    </message>
    <message>
        <source>Scheduled backup is paused.</source>
        <translation>Scheduled backup is paused.</translation>
    </message>
    <message>
        <source>Backup operation is in progress.</source>
        <translation>Backup operation is in progress.</translation>
    </message>
    <message>
        <source>Backup operation is paused.</source>
        <translation>Backup operation is paused.</translation>
    </message>
    <message>
        <source>You have disabled all your scheduled job(s)</source>
        <translation>You have disabled all your scheduled job(s)</translation>
    </message>
    <message>
        <source>Your next scheduled job will start on %@</source>
        <translation>Your next scheduled job will start on %@</translation>
    </message>
    <message>
        <source>Backed up %@ of %@ files</source>
        <translation>Backed up %@ of %@ files</translation>
    </message>
    <message>
        <source>Restored %@ of %@ files</source>
        <translation>Restored %@ of %@ files</translation>
    </message>
    <message>
        <source>%@ has been added to your Cloud Drive.</source>
        <translation>%@ has been added to your Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ and %@ more have been added to your Cloud Drive.</source>
        <translation>%@ and %@ more have been added to your Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ has been updated in your Cloud Drive.</source>
        <translation>%@ has been updated in your Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ and %@ more have been updated in your Cloud Drive.</source>
        <translation>%@ and %@ more have been updated in your Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ has been deleted from your Cloud Drive.</source>
        <translation>%@ has been deleted from your Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ and %@ more have been deleted from your Cloud Drive.</source>
        <translation>%@ and %@ more have been deleted from your Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ has been renamed to %@.</source>
        <translation>%@ has been renamed to %@.</translation>
    </message>
    <message>
        <source>%@ has been moved to %@.</source>
        <translation>%@ has been moved to %@.</translation>
    </message>
    <message>
        <source>%@ has shared %@ with you.</source>
        <translation>%@ has shared %@ with you.</translation>
    </message>
    <message>
        <source>%@ no longer shares %@ with you.</source>
        <translation>%@ no longer shares %@ with you.</translation>
    </message>
    <message>
        <source>%@ has been restored to your Cloud Drive.</source>
        <translation>%@ has been restored to your Cloud Drive.</translation>
    </message>
    <message>
        <source>You have signed out. Your Cloud Drive is no longer synced.</source>
        <translation>You have signed out. Your Cloud Drive is no longer synced.</translation>
    </message>
    <message>
        <source>Your account has been signed in on %@.</source>
        <translation>Your account has been signed in on %@.</translation>
    </message>
    <message>
        <source>Your session has ended. Sign in again.</source>
        <translation>Your session has ended. Sign in again.</translation>
    </message>
    <message>
        <source>Your password has been changed. Sign in again to go on syncing.</source>
        <translation>Your password has been changed. Sign in again to go on syncing.</translation>
    </message>
    <message>
        <source>You have used %@ of your storage.</source>
        <translation>You have used %@ of your storage.</translation>
    </message>
    <message>
        <source>You have used %@ of %@.</source>
        <translation>You have used %@ of %@.</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit. Upgrade your account to go on syncing.</source>
        <translation>You have exceeded the allocated quota limit. Upgrade your account to go on syncing.</translation>
    </message>
    <message>
        <source>Your account has enough space again. Syncing goes on.</source>
        <translation>Your account has enough space again. Syncing goes on.</translation>
    </message>
    <message>
        <source>Your account has expired. Renew it to go on backing up and syncing.</source>
        <translation>Your account has expired. Renew it to go on backing up and syncing.</translation>
    </message>
    <message>
        <source>Your account has been cancelled.</source>
        <translation>Your account has been cancelled.</translation>
    </message>
    <message>
        <source>Your plan has been changed to %@.</source>
        <translation>Your plan has been changed to %@.</translation>
    </message>
    <message>
        <source>Your backup has been completed.</source>
        <translation>Your backup has been completed.</translation>
    </message>
    <message>
        <source>Your backup has been completed: %@ of %@ files are stored.</source>
        <translation>Your backup has been completed: %@ of %@ files are stored.</translation>
    </message>
    <message>
        <source>Your backup has failed.</source>
        <translation>Your backup has failed.</translation>
    </message>
    <message>
        <source>Your backup has failed: %@</source>
        <translation>Your backup has failed: %@</translation>
    </message>
    <message>
        <source>Your backup has been stopped.</source>
        <translation>Your backup has been stopped.</translation>
    </message>
    <message>
        <source>Your restore has been completed.</source>
        <translation>Your restore has been completed.</translation>
    </message>
    <message>
        <source>Your restore has been completed: %@ of %@ files are back.</source>
        <translation>Your restore has been completed: %@ of %@ files are back.</translation>
    </message>
    <message>
        <source>Your restore has failed.</source>
        <translation>Your restore has failed.</translation>
    </message>
    <message>
        <source>Your restore has failed: %@</source>
        <translation>Your restore has failed: %@</translation>
    </message>
    <message>
        <source>Syncing has been paused.</source>
        <translation>Syncing has been paused.</translation>
    </message>
    <message>
        <source>Syncing has been resumed.</source>
        <translation>Syncing has been resumed.</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder has been moved to %@.</source>
        <translation>Your Cloud Drive folder has been moved to %@.</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder could not be moved.</source>
        <translation>Your Cloud Drive folder could not be moved.</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder has been deleted. Syncing has stopped.</source>
        <translation>Your Cloud Drive folder has been deleted. Syncing has stopped.</translation>
    </message>
    <message>
        <source>The folders to sync have been changed.</source>
        <translation>The folders to sync have been changed.</translation>
    </message>
    <message>
        <source>Your account has been reset on the web. Cloud Drive has been turned off on this computer.</source>
        <translation>Your account has been reset on the web. Cloud Drive has been turned off on this computer.</translation>
    </message>
    <message>
        <source>This computer has been removed from your account.</source>
        <translation>This computer has been removed from your account.</translation>
    </message>
    <message>
        <source>This computer has been replaced by %@ in your account.</source>
        <translation>This computer has been replaced by %@ in your account.</translation>
    </message>
    <message>
        <source>%@ keeps watch here. Click the icon to see your backups and to change your settings.</source>
        <translation>%@ keeps watch here. Click the icon to see your backups and to change your settings.</translation>
    </message>
    <message>
        <source>Online backup</source>
        <translation>Online backup</translation>
    </message>
    <message>
        <source>Online restore</source>
        <translation>Online restore</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Online delete</source>
        <translation>Online delete</translation>
    </message>
    <message>
        <source>click here</source>
        <translation>click here</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Click here</translation>
    </message>
    <message>
        <source>Click here to edit the cut-off time.</source>
        <translation>Click here to edit the cut-off time.</translation>
    </message>
    <message>
        <source>Click here to view excluded files / folders</source>
        <translation>Click here to view excluded files / folders</translation>
    </message>
    <message>
        <source>Reason: Missing permission for one or more files / folders in the backup set content.</source>
        <translation>Reason: Missing permission for one or more files / folders in the backup set content.</translation>
    </message>
    <message>
        <source>Some files / folders could not be backed up due to missing permissions.</source>
        <translation>Some files / folders could not be backed up due to missing permissions.</translation>
    </message>
    <message>
        <source>Reason: Missing permission for one or more files / folders in the backup set content. %@</source>
        <translation>Reason: Missing permission for one or more files / folders in the backup set content. %@</translation>
    </message>
    <message>
        <source>Some files / folders could not be backed up due to missing permissions. %@</source>
        <translation>Some files / folders could not be backed up due to missing permissions. %@</translation>
    </message>
    <message>
        <source>To enable access, add %@ and %@ under Full Disk Access. To know more visit %@.
</source>
        <translation>To enable access, add %@ and %@ under Full Disk Access. To know more visit %@.
</translation>
    </message>
    <message>
        <source>Grant full disk access to %@.</source>
        <translation>Grant full disk access to %@.</translation>
    </message>
    <message>
        <source>Full Disk Access</source>
        <translation>Full Disk Access</translation>
    </message>
    <message>
        <source>To know more visit %@</source>
        <translation>To know more visit %@</translation>
    </message>
    <message>
        <source>To know more, read FAQ.</source>
        <translation>To know more, read FAQ.</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Summary</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>Continuous data protection</source>
        <translation>Continuous data protection</translation>
    </message>
    <message>
        <source>Archive cleanup</source>
        <translation>Archive cleanup</translation>
    </message>
    <message>
        <source>Putback</source>
        <translation>Putback</translation>
    </message>
    <message>
        <source>Sync</source>
        <translation>Sync</translation>
    </message>
    <message>
        <source>Local backup</source>
        <translation>Local backup</translation>
    </message>
    <message>
        <source>Local restore</source>
        <translation>Local restore</translation>
    </message>
    <message>
        <source>Local delete</source>
        <translation>Local delete</translation>
    </message>
    <message>
        <source>Express backup</source>
        <translation>Express backup</translation>
    </message>
    <message>
        <source>Express restore</source>
        <translation>Express restore</translation>
    </message>
    <message>
        <source>Express delete</source>
        <translation>Express delete</translation>
    </message>
    <message>
        <source>Network and external drive backup</source>
        <translation>Network and external drive backup</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>... 
 [Log clipped]  </source>
        <translation>... 
 [Log clipped]  </translation>
    </message>
    <message>
        <source>View entire log</source>
        <translation>View entire log</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Select all</translation>
    </message>
    <message>
        <source>Select another</source>
        <translation>Select another</translation>
    </message>
    <message>
        <source>Selected folder doesn&apos;t have write permission. </source>
        <translation>Selected folder doesn&apos;t have write permission. </translation>
    </message>
    <message>
        <source>Unable to write the file(s)</source>
        <translation>Unable to write the file(s)</translation>
    </message>
    <message>
        <source>Activity logs</source>
        <translation>Activity logs</translation>
    </message>
    <message>
        <source>View logs from</source>
        <translation>View logs from</translation>
    </message>
    <message>
        <source>Past week</source>
        <translation>Past week</translation>
    </message>
    <message>
        <source>Past 2 weeks</source>
        <translation>Past 2 weeks</translation>
    </message>
    <message>
        <source>Past month</source>
        <translation>Past month</translation>
    </message>
    <message>
        <source>Beginning of time</source>
        <translation>Beginning of time</translation>
    </message>
    <message>
        <source>Archived logs</source>
        <translation>Archived logs</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>Operation</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>Date and time</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Duration</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Files</translation>
    </message>
    <message>
        <source>Delete Log</source>
        <translation>Delete Log</translation>
    </message>
    <message>
        <source>No items found</source>
        <translation>No items found</translation>
    </message>
    <message>
        <source>Reading the logs...</source>
        <translation>Reading the logs...</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>Delete selected item(s)</source>
        <translation>Delete selected item(s)</translation>
    </message>
    <message>
        <source>Delete all items</source>
        <translation>Delete all items</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archive</translation>
    </message>
    <message>
        <source>Would you like to delete all item(s)?</source>
        <translation>Would you like to delete all item(s)?</translation>
    </message>
    <message>
        <source>Would you like to delete selected item?</source>
        <translation>Would you like to delete selected item?</translation>
    </message>
    <message>
        <source>Would you like to delete selected item(s)?</source>
        <translation>Would you like to delete selected item(s)?</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Success</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>Failure</translation>
    </message>
    <message>
        <source>In Progress</source>
        <translation>In Progress</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>Look in:</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Folder:</translation>
    </message>
    <message>
        <source>Kind:</source>
        <translation>Kind:</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Cancelled</translation>
    </message>
</context>
</TS>
