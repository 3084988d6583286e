#include "device/blockassembler.h"

#include <utility>

char *BlockAssembler::reserve(qsizetype length)
{
    if (m_bytes.capacity() < frameSize)
        m_bytes.reserve(frameSize + blockSize);
    m_bytes.resize(m_kept + length);
    return m_bytes.data() + m_kept;
}

QByteArray BlockAssembler::takeFrame()
{
    m_kept = 0;
    m_counter = 0;
    return std::exchange(m_bytes, {});
}

void BlockAssembler::restart()
{
    m_bytes.truncate(m_kept = 0);
    m_counter = 1;
}
