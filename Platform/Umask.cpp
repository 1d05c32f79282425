#include "Platform/Umask.h"

#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

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
    return inherited ? u"umask %1; "_s.arg(*inherited, 4, 8, QChar(u'0')) : QString();
}
