#pragma once

#include "device/protocol/frameformat.h"

#include <QByteArray>

/// Collects the bytes of one image frame and counts its blocks. Not thread-safe: the receive loop's own.
class BlockAssembler
{
public:
    /// Room for `length` more bytes at the end; keep() or drop() must follow.
    [[nodiscard]] char *reserve(qsizetype length);

    /// Keeps the first `length` of the reserved bytes.
    void keep(qsizetype length) { m_bytes.truncate(m_kept += length); }

    /// Forgets the reserved bytes.
    void drop() { m_bytes.truncate(m_kept); }

    /// At least `counter` whole blocks have arrived.
    [[nodiscard]] bool boundaryReached() const { return m_kept >= m_counter * FrameFormat::blockBytes; }

    /// The counter stands at the frame's last block.
    [[nodiscard]] bool frameComplete() const { return m_counter == FrameFormat::blocksPerFrame; }

    /// Hands out all bytes and goes on with counter 0 and the empty buffer `next` as accumulator.
    [[nodiscard]] QByteArray takeFrame(QByteArray next = {});

    /// The counter for the block request that is due now; counts on.
    [[nodiscard]] int nextRequest() { return m_counter++; }

    /// Empty accumulator, counter 1: as before the first block of a frame.
    void restart();

private:
    QByteArray m_bytes;
    qsizetype m_kept = 0;
    int m_counter = 1;
};
