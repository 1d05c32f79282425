#pragma once

#include "Utility/Language/CVAppLocalization.h"

/// The sentences around the text of a log, and those that are looked for in it.
namespace DynamicViewLogs
{
/// @name In the program's language
/// @{
extern const LocalizedText detailsTab;
extern const LocalizedText summaryTab;
extern const LocalizedText uploadTab;
extern const LocalizedText downloadTab;
extern const LocalizedText renameTab;
extern const LocalizedText deleteTab;

extern const LocalizedText logClipped;     ///< ends with the blanks before viewEntireLogs
extern const LocalizedText viewEntireLogs; ///< the link behind it

extern const LocalizedText copy;
extern const LocalizedText selectAll;

extern const LocalizedText selectAnotherBtn;
extern const LocalizedText selectedFolderAlert; ///< a title that ends with a blank
extern const LocalizedText unableToWriteAlert;
/// @}

/// @name Keys, since the daemons write a log in a language of its own
/// @{
inline constexpr char clickHereLink[] = QT_TRANSLATE_NOOP("Localizable", "click here");
inline constexpr char ClickHereCaps[] = QT_TRANSLATE_NOOP("Localizable", "Click here");
/// Each holds ClickHereCaps or clickHereLink, in every language.
inline constexpr char cutOffClickHere[] =
    QT_TRANSLATE_NOOP("Localizable", "Click here to edit the cut-off time.");
inline constexpr char ecludeFilesOrFoldersClickHere[] =
    QT_TRANSLATE_NOOP("Localizable", "Click here to view excluded files / folders");

inline constexpr char backupSetMissing[] =
    QT_TRANSLATE_NOOP("Localizable", "Reason: Missing permission for one or more files / folders in the backup "
                                     "set content.");
inline constexpr char filesMissing[] =
    QT_TRANSLATE_NOOP("Localizable", "Some files / folders could not be backed up due to missing permissions.");
/// The same with a place for grantFullDiskAccess.
inline constexpr char backupSetMissingWithReason[] =
    QT_TRANSLATE_NOOP("Localizable", "Reason: Missing permission for one or more files / folders in the backup "
                                     "set content. %@");
inline constexpr char filesMissingWithReason[] = QT_TRANSLATE_NOOP(
    "Localizable", "Some files / folders could not be backed up due to missing permissions. %@");
/// Places: the application, the daemon, the address of the FAQ.
inline constexpr char fullDiskAccessInstruction[] = QT_TRANSLATE_NOOP(
    "Localizable", "To enable access, add %@ and %@ under Full Disk Access. To know more visit %@.\n");
inline constexpr char grantFullDiskAccess[] =
    QT_TRANSLATE_NOOP("Localizable", "Grant full disk access to %@."); ///< place: the product's name
inline constexpr char fullDiskAccess[] = QT_TRANSLATE_NOOP("Localizable", "Full Disk Access");
inline constexpr char visitFaq[] = QT_TRANSLATE_NOOP("Localizable", "To know more visit %@"); ///< the address
inline constexpr char readFaq[] = QT_TRANSLATE_NOOP("Localizable", "To know more, read FAQ.");
/// @}
} // namespace DynamicViewLogs
