#pragma once

#include <QString>

/// Why a call was refused or a connection ended. Three domains occur: this class's own with the codes below,
/// that of the system with an errno, and that of name look-ups with a code of getaddrinfo().
struct SocketError {
    QString domain;
    int code = 0;
    QString description; ///< what happened, in words
    QString reason;      ///< the system call that failed; empty for other errors

    friend bool operator==(const SocketError &, const SocketError &) = default;
};

/// Codes of the domain "GCDAsyncSocketErrorDomain".
enum class SocketErrorCode {
    None = 0,
    BadConfiguration = 1,
    BadParameter = 2,
    ConnectTimeout = 3,
    ReadTimeout = 4,
    WriteTimeout = 5,
    ReadMaxedOut = 6,
    Closed = 7,
    Other = 8,
};

inline constexpr QLatin1StringView SocketErrorDomain{"GCDAsyncSocketErrorDomain"};
inline constexpr QLatin1StringView SystemErrorDomain{"NSPOSIXErrorDomain"};
inline constexpr QLatin1StringView LookUpErrorDomain{"kCFStreamErrorDomainNetDB"};

/// An error of this class with a text of the caller's.
[[nodiscard]] SocketError socketError(SocketErrorCode code, const QString &description);

/// One of the codes 3 to 7 with its own text, translated where the context "GCDAsyncSocket" has a text for its
/// name.
[[nodiscard]] SocketError socketError(SocketErrorCode code);

/// The error of a failed system call: errno `number` and its text; `reason` names the call.
[[nodiscard]] SocketError systemError(int number, QLatin1StringView reason);

/// The error of a failed getaddrinfo().
[[nodiscard]] SocketError lookUpError(int code);
