#include "Platform/Umask.h"

#include <optional>

#include <sys/stat.h>

namespace
{
constexpr mode_t PrivateMask = 077;

std::optional<mode_t> inherited; // set before the first thread starts, read-only afterwards
} // namespace

void Umask::keepPrivate()
{
    inherited = ::umask(PrivateMask);
}

QString Umask::shellPrefix()
{
    return inherited ? QStringLiteral("umask %1; ").arg(*inherited, 4, 8, QLatin1Char('0')) : QString();
}
