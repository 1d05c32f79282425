#include "Messaging/PreBuffer.h"

GCDAsyncSocketPreBuffer::GCDAsyncSocketPreBuffer(qsizetype capacity)
{
    ensureCapacityForWrite(capacity);
}

void GCDAsyncSocketPreBuffer::ensureCapacityForWrite(qsizetype count)
{
    const qsizetype missing = count - freeSpace();
    if (missing <= 0)
        return;
    auto *const grown = static_cast<char *>(std::realloc(m_block.get(), static_cast<size_t>(m_size + missing)));
    Q_CHECK_PTR(grown);
    std::ignore = m_block.release(); // realloc() has taken it
    m_block.reset(grown);
    m_size += missing;
}

void GCDAsyncSocketPreBuffer::didRead(qsizetype count)
{
    m_read += count;
    if (m_read == m_write)
        reset();
}
