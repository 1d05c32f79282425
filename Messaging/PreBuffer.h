#pragma once

#include <QByteArrayView>

#include <cstdlib>
#include <memory>

/// Bytes read from a socket that no packet has claimed yet: one block that is filled at its end and emptied
/// from its front. When the last byte is taken both ends go back to the start, so the whole block is free
/// again.
class GCDAsyncSocketPreBuffer
{
public:
    explicit GCDAsyncSocketPreBuffer(qsizetype capacity);

    [[nodiscard]] qsizetype capacity() const { return m_size; }
    /// The unclaimed bytes; valid until the next call that changes the buffer.
    [[nodiscard]] QByteArrayView bytes() const { return {m_block.get() + m_read, m_write - m_read}; }
    [[nodiscard]] bool isEmpty() const { return m_read == m_write; }

    /// Grows the block by what is missing, so that `count` bytes fit behind those that are there.
    void ensureCapacityForWrite(qsizetype count);
    /// Where the next bytes go, and how many may; tell didWrite() how many came.
    [[nodiscard]] char *writePointer() { return m_block.get() + m_write; }
    [[nodiscard]] qsizetype freeSpace() const { return m_size - m_write; }
    void didWrite(qsizetype count) { m_write += count; }

    /// Takes `count` bytes, at most as many as there are, off the front.
    void didRead(qsizetype count);
    /// Forgets all bytes.
    void reset() { m_read = m_write = 0; }

private:
    struct Free {
        void operator()(char *block) const { std::free(block); }
    };
    std::unique_ptr<char, Free> m_block;
    qsizetype m_size = 0;
    qsizetype m_read = 0;
    qsizetype m_write = 0;
};
