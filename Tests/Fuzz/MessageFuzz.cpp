// A stream of frames of any bytes, arriving in pieces of any length: the first byte says how long they are.

#include "Messaging/AsyncSocketPackets.h"
#include "Messaging/DaemonMessage.h"
#include "Platform/Limits.h"
#include "Tests/Fuzz/Promise.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace
{
/// The next `length` bytes of the stream, as a socket gathers them; fewer where it ends before.
QByteArray gathered(QByteArrayView &stream, qsizetype length, qsizetype piece)
{
    GCDAsyncReadPacket packet{.readLength = length};
    bool isComplete = false;
    while (!isComplete && !stream.isEmpty()) {
        const QByteArrayView arrived = stream.first(std::min(piece, stream.size()));
        const qsizetype usable = packet.usableBytes(arrived, &isComplete);
        packet.append(arrived.first(usable));
        stream = stream.sliced(usable);
    }
    promise(packet.bytesDone <= length && isComplete == (packet.bytesDone == length),
            "a packet takes its length");
    return packet.take();
}

void use(const DaemonMessage &message)
{
    const QVariantMap whole = message.toVariantMap();
    promise(message.contains("type"_L1) >= whole.contains(u"type"_s), "a key of the whole is found alone");
    if (const auto type = whole.constFind(u"type"_s);
        type != whole.cend() && type->typeId() == QMetaType::QString)
        promise(message.type() == type->toString(), "a text is the same alone");
    promise(message.argumentList().size() <= 8, "no argument twice");
    for (const auto key : {"userName"_L1, "data/files/0"_L1, ""_L1, "/"_L1}) {
        static_cast<void>(message.text(key));
        static_cast<void>(message.integer(key));
        const auto object = message.object(key);
        if (!object)
            continue;
        qsizetype texts = 0;
        object->forEachText([&](std::string_view, std::string_view) { ++texts; });
        promise(texts <= object->memberCount(), "no more texts than members");
        promise(object->hasSameMembers(*object), "an object is like itself");
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const qsizetype piece = 1 + data[0];
    QByteArrayView stream(data + 1, qsizetype(size - 1));
    DaemonMessageReader reader;
    while (!stream.isEmpty()) {
        quint64 length = 0;
        const QByteArray header = gathered(stream, sizeof length, piece);
        if (header.size() < qsizetype(sizeof length))
            break;
        std::memcpy(&length, header.constData(), sizeof length);
        if (length == 0)
            continue;
        if (length > Limits::FrameBytes)
            break;
        QByteArray payload = gathered(stream, qsizetype(length), piece);
        if (payload.size() < qsizetype(length))
            break;
        QString reason;
        if (const auto message = reader.read(std::move(payload), &reason))
            use(*message);
        else
            promise(!reason.isEmpty(), "a refusal has a reason");
    }
    return 0;
}
