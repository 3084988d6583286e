#include "simulator/firmware/sendqueue.h"

#include <algorithm>

namespace simulator {

void SendQueue::appendReply(const QByteArray &bytes, Nanoseconds leaves)
{
    Chunk chunk;
    chunk.bytes = bytes;
    chunk.length = bytes.size();
    m_segments.push_back({std::move(chunk), leaves, leaves + m_latency});
}

void SendQueue::appendImage(const FrameRecipe &recipe, qsizetype offset, qsizetype length, Nanoseconds leaves)
{
    m_segments.push_back({{{}, recipe, offset, length, true}, leaves, leaves});
}

qsizetype SendQueue::available(Nanoseconds now) const
{
    qsizetype bytes = 0;
    for (const Segment &segment : m_segments) {
        if (segment.arrives > now)
            break;
        bytes += segment.chunk.length;
    }
    return bytes;
}

std::optional<Nanoseconds> SendQueue::nextArrival(Nanoseconds now) const
{
    for (const Segment &segment : m_segments) {
        if (segment.arrives > now)
            return segment.arrives;
    }
    return std::nullopt;
}

SendQueue::Chunk SendQueue::take(qsizetype longest, qsizetype longestImage, Nanoseconds now)
{
    if (m_segments.empty() || m_segments.front().arrives > now)
        return {};
    Chunk &first = m_segments.front().chunk;
    Chunk taken = first;
    taken.length = std::min({first.length, longest, first.isImage ? longestImage : longest});
    taken.bytes.truncate(taken.length);
    if (first.isImage)
        m_imageBytesTaken += taken.length;
    if (taken.length == first.length) {
        m_segments.erase(m_segments.begin());
    } else {
        first.bytes.remove(0, taken.length);
        first.offset += taken.length;
        first.length -= taken.length;
    }
    return taken;
}

void SendQueue::purge(Nanoseconds now)
{
    std::erase_if(m_segments, [now](const Segment &segment) { return segment.leaves <= now; });
}

void SendQueue::dropUnsentImage(Nanoseconds now)
{
    std::erase_if(m_segments,
                  [now](const Segment &segment) { return segment.chunk.isImage && segment.leaves > now; });
}

} // namespace simulator
