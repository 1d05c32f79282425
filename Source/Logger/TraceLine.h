#pragma once

#include <QString>

/// The texts of trace lines.
namespace TraceLine
{
/// Now in the pattern "EEE LLL d yyyy h:m:s a" (Unicode Technical Standard 35) of the current locale and time
/// zone. Cheap to call: the text of one second is made once. Safe from any thread.
[[nodiscard]] QString timestamp();

/// `line` with every "::quillon", in any case, as "::" and the application's name in lower case, so that engine
/// paths of the sister product read as this one's.
[[nodiscard]] QString namingThisProduct(QString line);
} // namespace TraceLine
