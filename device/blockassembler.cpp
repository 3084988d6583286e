#include "device/blockassembler.h"

#include "device/protocol/frameformat.h"

#include <utility>

char *BlockAssembler::reserve(qsizetype length)
{
    m_bytes.resize(m_kept + length);
    return m_bytes.data() + m_kept;
}

QByteArray BlockAssembler::takeFrame(QByteArray next)
{
    m_kept = 0;
    m_counter = 0;
    return std::exchange(m_bytes, std::move(next));
}

void BlockAssembler::restart()
{
    m_kept = 0;
    m_counter = 1;
    m_bytes.truncate(0);
    // Once: blocks are appended without moving what is there.
    m_bytes.reserve(FrameFormat::frameBytes + FrameFormat::blockBytes);
}
