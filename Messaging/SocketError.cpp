#include "Messaging/SocketError.h"

#include <QCoreApplication>

#include <netdb.h>

#include <system_error>

namespace
{
struct KnownText {
    const char *name; // the key of its translation
    const char *english;
};

KnownText knownText(SocketErrorCode code)
{
    switch (code) {
    case SocketErrorCode::ConnectTimeout:
        return {"GCDAsyncSocketConnectTimeoutError", "Attempt to connect to host timed out"};
    case SocketErrorCode::ReadTimeout:
        return {"GCDAsyncSocketReadTimeoutError", "Read operation timed out"};
    case SocketErrorCode::WriteTimeout:
        return {"GCDAsyncSocketWriteTimeoutError", "Write operation timed out"};
    case SocketErrorCode::ReadMaxedOut:
        return {"GCDAsyncSocketReadMaxedOutError", "Read operation reached set maximum length"};
    case SocketErrorCode::Closed:
        return {"GCDAsyncSocketClosedError", "Socket closed by remote peer"};
    default:
        return {"", ""};
    }
}
} // namespace

SocketError socketError(SocketErrorCode code, const QString &description)
{
    return {SocketErrorDomain, static_cast<int>(code), description, {}};
}

SocketError socketError(SocketErrorCode code)
{
    const auto [name, english] = knownText(code);
    const QString translated = QCoreApplication::translate("GCDAsyncSocket", name);
    return socketError(code, translated == QLatin1StringView(name) ? QString::fromLatin1(english) : translated);
}

SocketError systemError(int number, QLatin1StringView reason)
{
    const std::string text =
        std::generic_category().message(number); // strerror() shares one buffer over threads
    return {SystemErrorDomain, number, QString::fromLocal8Bit(text.c_str()), reason};
}

SocketError lookUpError(int code)
{
    return {LookUpErrorDomain, code, QString::fromLocal8Bit(::gai_strerror(code)), {}};
}
