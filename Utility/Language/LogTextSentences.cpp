#include "Utility/Language/LogTextSentences.h"

namespace DynamicViewLogs
{
const LocalizedText detailsTab{QT_TRANSLATE_NOOP("Localizable", "Details")};
const LocalizedText summaryTab{QT_TRANSLATE_NOOP("Localizable", "Summary")};
const LocalizedText uploadTab{QT_TRANSLATE_NOOP("Localizable", "Upload")};
const LocalizedText downloadTab{QT_TRANSLATE_NOOP("Localizable", "Download")};
const LocalizedText renameTab{QT_TRANSLATE_NOOP("Localizable", "Rename")};
const LocalizedText deleteTab{QT_TRANSLATE_NOOP("Localizable", "Delete")};

const LocalizedText logClipped{QT_TRANSLATE_NOOP("Localizable", "... \n [Log clipped]  ")};
const LocalizedText viewEntireLogs{QT_TRANSLATE_NOOP("Localizable", "View entire log")};

const LocalizedText copy{QT_TRANSLATE_NOOP("Localizable", "Copy")};
const LocalizedText selectAll{QT_TRANSLATE_NOOP("Localizable", "Select all")};

const LocalizedText selectAnotherBtn{QT_TRANSLATE_NOOP("Localizable", "Select another")};
const LocalizedText selectedFolderAlert{
    QT_TRANSLATE_NOOP("Localizable", "Selected folder doesn't have write permission. ")};
const LocalizedText unableToWriteAlert{QT_TRANSLATE_NOOP("Localizable", "Unable to write the file(s)")};
} // namespace DynamicViewLogs
