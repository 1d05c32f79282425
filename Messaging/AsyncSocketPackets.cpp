#include "Messaging/AsyncSocketPackets.h"

#include <algorithm>
#include <cstring>

namespace
{
/// Where `term` ends in `head` followed by `tail`, counted from the start of `tail`; -1 when it is not there. A
/// match within `head` alone is no match: those bytes have been searched before.
qsizetype endOfTerminator(QByteArrayView term, QByteArrayView head, QByteArrayView tail)
{
    const QByteArrayView before = head.last(std::min(head.size(), term.size() - 1));
    const QByteArrayView after = tail.first(std::min(tail.size(), term.size() - 1));
    const qsizetype across = (before.toByteArray() + after.toByteArray()).indexOf(term);
    if (across >= 0)
        return across + term.size() - before.size();
    const qsizetype within = tail.indexOf(term);
    return within >= 0 ? within + term.size() : -1;
}
} // namespace

qsizetype GCDAsyncReadPacket::usableBytes(QByteArrayView available, bool *complete) const
{
    *complete = false;
    if (readLength > 0) {
        const qsizetype wanted = readLength - bytesDone;
        *complete = available.size() >= wanted;
        return std::min(available.size(), wanted);
    }
    if (maxLength > 0)
        available = available.first(std::min(available.size(), maxLength - bytesDone));
    if (term.isEmpty()) {
        *complete = bytesDone + available.size() > 0;
        return available.size();
    }
    const qsizetype end = endOfTerminator(term, QByteArrayView(buffer).first(bytesDone), available);
    *complete = end >= 0;
    return *complete ? end : available.size();
}

void GCDAsyncReadPacket::reserve(qsizetype total)
{
    if (buffer.capacity() < total + TailRoom)
        buffer.reserve(total + TailRoom);
}

void GCDAsyncReadPacket::append(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        qsizetype room = 0;
        char *const to = space(bytes.size(), &room);
        std::memcpy(to, bytes.data(), static_cast<size_t>(room));
        bytesDone += room;
        bytes = bytes.sliced(room);
    }
}

char *GCDAsyncReadPacket::space(qsizetype count, qsizetype *room)
{
    const qsizetype allotted = std::max(FirstAllotment, 2 * bytesDone);
    const qsizetype total = std::min(bytesDone + count, allotted);
    const qsizetype inFull = readLength > 0 ? std::min(readLength, allotted) : total;
    reserve(std::max(total, inFull));
    buffer.resize(total); // leaves new bytes as they are; only what was written is handed over
    *room = total - bytesDone;
    return buffer.data() + bytesDone;
}

QByteArray GCDAsyncReadPacket::take()
{
    buffer.truncate(bytesDone);
    reserve(bytesDone);
    return std::move(buffer);
}
