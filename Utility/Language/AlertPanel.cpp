#include "Utility/Language/AlertPanel.h"

namespace AlertPanel
{
const LocalizedText permissionsWarning{permissionsSentence};
const LocalizedText learnMore{QT_TRANSLATE_NOOP("Localizable", "Learn more")};
const LocalizedText okButton{QT_TRANSLATE_NOOP("Localizable", "OK")};
} // namespace AlertPanel
