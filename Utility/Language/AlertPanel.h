#pragma once

#include "Utility/Language/CVAppLocalization.h"

/// The sentences of the alert window itself; what it asks and says comes from elsewhere.
namespace AlertPanel
{
/// The one message with a link, in English; it ends with learnMore.
inline constexpr char permissionsSentence[] = QT_TRANSLATE_NOOP(
    "Localizable", "Warning! Backup operations will not work without these permissions. Learn more");

extern const LocalizedText permissionsWarning; ///< permissionsSentence in the program's language
extern const LocalizedText learnMore;          ///< the link in it
extern const LocalizedText okButton;
} // namespace AlertPanel
