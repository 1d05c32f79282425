#include "Platform/SessionBus/PortName.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxBusName = 255; // as the D-Bus specification limits names

bool isLetter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}
bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}
} // namespace

namespace PortName
{
const QString ObjectPath = u"/port"_s;
const QString Interface = u"com.halvernet.Corvane.MessageSendingProtocol"_s;
const QString Method = u"didReceiveDataFromOtherProcess"_s;
const QString Signature = u"av"_s;

QString busName(const QString &port)
{
    if (port.isEmpty() || isDigit(port.front().toLatin1()))
        return {};
    QByteArray name("com.halvernet.Corvane.Port.");
    for (const char byte : port.toUtf8()) {
        if (isLetter(byte) || isDigit(byte))
            name.append(byte);
        else
            name.append('_').append(QByteArray(1, byte).toHex());
    }
    return name.size() > MaxBusName ? QString() : QString::fromLatin1(name);
}
} // namespace PortName
