#include "Platform/BusAddress.h"

#include <QFileInfo>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Variable[] = "DBUS_SESSION_BUS_ADDRESS";

struct Withheld {
    bool wasSet = false;
    QByteArray value;
};
std::optional<Withheld> withheld;
} // namespace

std::optional<QString> BusAddress::current()
{
    const QByteArray given = withheld ? withheld->value : qgetenv(Variable);
    if (!given.isEmpty())
        return QString::fromLocal8Bit(given);
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = runtimeFolder + u"/bus"_s;
    if (runtimeFolder.isEmpty() || !QFileInfo::exists(socket))
        return std::nullopt;
    return u"unix:path="_s + socket;
}

void BusAddress::withhold()
{
    if (withheld)
        return;
    withheld = Withheld{qEnvironmentVariableIsSet(Variable), qgetenv(Variable)};
    // No such transport: whoever tries it fails at once. Without a value libraries look elsewhere by
    // themselves.
    qputenv(Variable, "disabled:");
}

bool BusAddress::isWithheld()
{
    return withheld.has_value();
}

QByteArrayList BusAddress::childEnvironment()
{
    const QByteArray prefix = QByteArray(Variable) + '=';
    QByteArrayList entries;
    for (char **entry = environ; entry && *entry; ++entry) {
        QByteArray text(*entry);
        if (!withheld || !text.startsWith(prefix))
            entries.append(std::move(text));
    }
    if (withheld && withheld->wasSet)
        entries.append(prefix + withheld->value);
    return entries;
}
