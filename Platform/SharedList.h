#pragma once

#include "Platform/FileResult.h"
#include "Platform/PropertyList.h"

#include <functional>
#include <optional>

/// A property list that several programs change, each by replacing it whole. They know of no lock of ours, so
/// the file is looked at once more right before it is replaced: where it has changed since it was read, all
/// begins again with what stands there now.
namespace SharedList
{
/// How often it is begun again while others go on changing the file; then it stays as they left it.
inline constexpr int MostAttempts = 20;

enum class Missing { Refuse, Begin }; ///< what becomes of a file that isn't there: a failure, or an empty list

/// Changes `list`, or leaves it as it is. A reason where nothing is to be written.
using Change = std::function<std::optional<QString>(QVariantMap &list)>;

/// Reads the dictionary at `path`, has `change` change it, and writes it in `format`; nothing is written where
/// it is the same after that. `change` may be called several times, each time with what stands in the file
/// then. Every failure leaves the file as it was; one that is there and holds no dictionary is never replaced.
FileResult update(const QString &path, Missing missing, PropertyList::Format format, const Change &change);
} // namespace SharedList
