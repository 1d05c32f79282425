// Reads, writes and their time-outs. A packet is served on the thread that queued it for as long as the socket
// goes along; only when it would block does the reactor watch the descriptor, for one report.
#include "Messaging/GCDAsyncSocket.h"

#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype PreBufferLimit = 64 * 1024;
constexpr qsizetype ReadAtOnce = 32768; // where a packet does not say how much it wants
constexpr auto ReadCall = "Error in read() function"_L1;
constexpr auto WriteCall = "Error in write() function"_L1;

bool wouldBlock(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK;
}
} // namespace

thread_local GCDAsyncSocket::FollowUp *GCDAsyncSocket::t_followUp = nullptr;

// ---- Reads --------------------------------------------------------------------------------------------------

void GCDAsyncSocket::enqueueRead(GCDAsyncReadPacket packet)
{
    m_socketQueue.dispatch([self = shared_from_this(), packet = std::move(packet)]() mutable {
        self->m_hasNoRead = false;
        if (self->m_flags.connected && !self->m_currentRead && self->m_readQueue.empty())
            self->startRead(std::move(packet));
        else
            self->m_readQueue.push_back(std::move(packet));
        self->maybeDequeueRead();
    });
}

void GCDAsyncSocket::startRead(GCDAsyncReadPacket &&packet)
{
    m_currentRead = std::move(packet);
    ++m_readSerial;
    startReadTimer(m_currentRead->timeout);
}

void GCDAsyncSocket::maybeDequeueRead()
{
    // A loop rather than a chain of calls: one segment may serve any number of queued reads.
    while (m_flags.connected && !m_flags.readsPaused && !m_flags.readWaits) {
        if (!m_currentRead) {
            if (m_readQueue.empty()) {
                m_hasNoRead = true;
                closeWhenDone();
                return;
            }
            startRead(std::move(m_readQueue.front()));
            m_readQueue.pop_front();
        }
        switch (doReadData()) {
        case Progress::Complete:
            completeCurrentRead();
            break;
        case Progress::Waits:
            m_flags.readWaits = true;
            waitForSocket();
            return;
        case Progress::Closed:
            return;
        }
    }
}

GCDAsyncSocket::Progress GCDAsyncSocket::doReadData()
{
    for (;;) {
        bool complete = false;
        const qsizetype usable = m_currentRead->usableBytes(m_preBuffer.bytes(), &complete);
        m_currentRead->append(m_preBuffer.bytes().first(usable));
        m_preBuffer.didRead(usable);
        if (complete)
            return Progress::Complete;
        if (m_currentRead->isMaxedOut()) {
            closeWithError(socketError(SocketErrorCode::ReadMaxedOut));
            return Progress::Closed;
        }
        if (!m_flags.mayHaveBytes)
            return Progress::Waits;
        const qsizetype count = m_currentRead->readLength > 0 ? readIntoPacket() : readIntoPreBuffer();
        if (count > 0)
            continue;
        if (count == 0) {
            closeWithError(socketError(SocketErrorCode::Closed));
            return Progress::Closed;
        }
        if (wouldBlock(errno))
            return Progress::Waits;
        if (errno != EINTR) {
            closeWithError(systemError(errno, ReadCall));
            return Progress::Closed;
        }
    }
}

/// Fills the packet from the socket, and the pre-buffer with what follows, in one system call. The pre-buffer
/// is empty by now. Returns what read() does.
qsizetype GCDAsyncSocket::readIntoPacket()
{
    const qsizetype wanted = m_currentRead->readLength - m_currentRead->bytesDone;
    qsizetype room = 0;
    std::array<iovec, 2> targets{};
    targets[0].iov_base = m_currentRead->space(wanted, &room);
    targets[0].iov_len = static_cast<size_t>(room);
    int used = 1;
    if (room == wanted) {
        m_preBuffer.ensureCapacityForWrite(m_preBufferTarget);
        targets[1].iov_base = m_preBuffer.writePointer();
        targets[1].iov_len = static_cast<size_t>(m_preBuffer.freeSpace());
        used = 2;
    }
    const qsizetype count = ::readv(m_socket.fd(), targets.data(), used);
    if (count <= 0)
        return count;
    m_currentRead->bytesDone += std::min(count, room);
    if (used == 1)
        return count;
    const qsizetype surplus = std::max<qsizetype>(count - room, 0);
    // A read that leaves room has emptied the socket, so the next one would only be told so.
    m_flags.mayHaveBytes = surplus == m_preBuffer.freeSpace();
    if (m_flags.mayHaveBytes)
        m_preBufferTarget = std::min(2 * m_preBufferTarget, PreBufferLimit);
    m_preBuffer.didWrite(surplus);
    return count;
}

/// Fills the pre-buffer, so that no byte past what the packet wants enters the packet. Returns what read()
/// does.
qsizetype GCDAsyncSocket::readIntoPreBuffer()
{
    const qsizetype limit = m_currentRead->maxLength;
    const qsizetype missing = limit > 0 ? limit - m_currentRead->bytesDone : ReadAtOnce;
    const qsizetype length = std::min(missing, ReadAtOnce);
    m_preBuffer.ensureCapacityForWrite(length);
    const qsizetype count = ::read(m_socket.fd(), m_preBuffer.writePointer(), static_cast<size_t>(length));
    if (count > 0)
        m_preBuffer.didWrite(count);
    return count;
}

void GCDAsyncSocket::completeCurrentRead()
{
    m_readTimer.reset();
    auto data = m_currentRead->take();
    const qint64 tag = m_currentRead->tag;
    m_currentRead.reset();
    if (tellAfterPresentCall(data, tag))
        return;
    tellDelegate(
        [data = std::move(data), tag](GCDAsyncSocketDelegate &delegate, GCDAsyncSocket &socket) mutable {
            delegate.socketDidReadData(socket, std::move(data), tag);
        });
}

/// Only where nothing else is under way to the delegate, so that the order holds.
bool GCDAsyncSocket::tellAfterPresentCall(QByteArray &data, qint64 tag)
{
    FollowUp *const present = t_followUp;
    if (!present || present->socket != this || !present->isOpen || present->data || m_callsUnderWay > 0)
        return false;
    present->delegate = m_delegate;
    present->data = std::move(data);
    present->tag = tag;
    return true;
}

void GCDAsyncSocket::tellFollowUp(FollowUp &followUp)
{
    auto data = std::exchange(followUp.data, std::nullopt);
    const auto listener = data ? followUp.delegate.lock() : nullptr;
    if (listener)
        listener->socketDidReadData(*this, std::move(*data), followUp.tag);
}

// ---- Writes -------------------------------------------------------------------------------------------------

void GCDAsyncSocket::maybeDequeueWrite()
{
    while (m_flags.connected && !m_flags.writesPaused && !m_flags.writeWaits) {
        if (!m_currentWrite) {
            if (m_writeQueue.empty()) {
                closeWhenDone();
                return;
            }
            m_currentWrite = std::move(m_writeQueue.front());
            m_writeQueue.pop_front();
            ++m_writeSerial;
            startWriteTimer(m_currentWrite->timeout);
        }
        switch (doWriteData()) {
        case Progress::Complete:
            m_writeTimer.reset();
            tellDelegate([tag = m_currentWrite->tag](GCDAsyncSocketDelegate &delegate, GCDAsyncSocket &socket) {
                delegate.socketDidWriteDataWithTag(socket, tag);
            });
            m_currentWrite.reset();
            break;
        case Progress::Waits:
            m_flags.writeWaits = true;
            waitForSocket();
            return;
        case Progress::Closed:
            return;
        }
    }
}

GCDAsyncSocket::Progress GCDAsyncSocket::doWriteData()
{
    GCDAsyncWritePacket &packet = *m_currentWrite;
    while (packet.bytesDone < packet.buffer.size()) {
        const char *const rest = packet.buffer.constData() + packet.bytesDone;
        const auto left = static_cast<size_t>(packet.buffer.size() - packet.bytesDone);
        const qsizetype count = ::send(m_socket.fd(), rest, left, MSG_NOSIGNAL);
        if (count >= 0) {
            packet.bytesDone += count;
        } else if (wouldBlock(errno)) {
            return Progress::Waits;
        } else if (errno != EINTR) {
            closeWithError(systemError(errno, WriteCall));
            return Progress::Closed;
        }
    }
    return Progress::Complete;
}

// ---- The descriptor -----------------------------------------------------------------------------------------

void GCDAsyncSocket::waitForSocket()
{
    Reactor::Events events;
    events.setFlag(Reactor::Readable, m_flags.readWaits);
    events.setFlag(Reactor::Writable, m_flags.writeWaits);
    events.setFlag(Reactor::HungUp, m_flags.watchesEnd);
    if (!m_socket.watch->arm(events))
        closeWithError(systemError(errno, WatchCall));
}

void GCDAsyncSocket::socketIsReady()
{
    // The report has ended the watch for all three; who still waits asks again.
    m_flags.readWaits = false;
    m_flags.writeWaits = false;
    m_flags.watchesEnd = false;
    m_flags.mayHaveBytes = true;
    if (!m_currentRead)
        checkForEnd();
    maybeDequeueRead();
    maybeDequeueWrite();
}

void GCDAsyncSocket::watchForEnd()
{
    // Bytes that wait in the pre-buffer keep the connection for whoever comes to read them.
    if (!m_flags.connected || m_flags.watchesEnd || m_currentRead || !m_preBuffer.isEmpty())
        return;
    m_flags.watchesEnd = true;
    waitForSocket();
}

void GCDAsyncSocket::checkForEnd()
{
    char next = 0;
    const auto count = ::recv(m_socket.fd(), &next, sizeof next, MSG_PEEK);
    if (count == 0 && m_preBuffer.isEmpty())
        closeWithError(socketError(SocketErrorCode::Closed));
    else if (count < 0 && !wouldBlock(errno) && errno != EINTR)
        closeWithError(systemError(errno, ReadCall));
    else if (count < 0)
        watchForEnd();
}

// ---- Time-outs ----------------------------------------------------------------------------------------------

/// Asks on the delegate queue and answers on the socket queue. A delegate that is gone gives no time.
template<class Question, class Answer>
void GCDAsyncSocket::askForMoreTime(Question question, Answer answer)
{
    auto reply = onSocketQueue(std::move(answer));
    m_delegateQueue->async([socket = shared_from_this(), delegate = m_delegate, question, reply] {
        const auto listener = delegate.lock();
        reply(listener ? question(*listener, *socket) : Seconds::zero());
    });
}

void GCDAsyncSocket::startReadTimer(Seconds delay)
{
    if (!(delay >= Seconds::zero()))
        return;
    m_readTimer = startTimer(delay, [serial = m_readSerial](GCDAsyncSocket &socket) {
        if (socket.m_readSerial != serial || !socket.m_currentRead)
            return;
        socket.m_flags.readsPaused = true;
        const auto &packet = *socket.m_currentRead;
        socket.askForMoreTime(
            [tag = packet.tag, elapsed = packet.timeout, done = packet.bytesDone](auto &delegate, auto &asked) {
                return delegate.socketShouldTimeoutReadWithTag(asked, tag, elapsed, done);
            },
            &GCDAsyncSocket::extendRead);
    });
}

void GCDAsyncSocket::startWriteTimer(Seconds delay)
{
    if (!(delay >= Seconds::zero()))
        return;
    m_writeTimer = startTimer(delay, [serial = m_writeSerial](GCDAsyncSocket &socket) {
        if (socket.m_writeSerial != serial || !socket.m_currentWrite)
            return;
        socket.m_flags.writesPaused = true;
        const auto &packet = *socket.m_currentWrite;
        socket.askForMoreTime(
            [tag = packet.tag, elapsed = packet.timeout, done = packet.bytesDone](auto &delegate, auto &asked) {
                return delegate.socketShouldTimeoutWriteWithTag(asked, tag, elapsed, done);
            },
            &GCDAsyncSocket::extendWrite);
    });
}

void GCDAsyncSocket::extendRead(Seconds extension)
{
    if (extension <= Seconds::zero()) {
        closeWithError(socketError(SocketErrorCode::ReadTimeout));
        return;
    }
    m_currentRead->timeout += extension;
    m_flags.readsPaused = false;
    m_flags.mayHaveBytes = true;
    startReadTimer(extension);
    maybeDequeueRead();
}

void GCDAsyncSocket::extendWrite(Seconds extension)
{
    if (extension <= Seconds::zero()) {
        closeWithError(socketError(SocketErrorCode::WriteTimeout));
        return;
    }
    m_currentWrite->timeout += extension;
    m_flags.writesPaused = false;
    startWriteTimer(extension);
    maybeDequeueWrite();
}
