#pragma once

#include "simulator/clock.h"
#include "simulator/sensor/sensor.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace simulator {

/// What is on its way from the detector to the reader, in order. Replies are bytes; image data is the recipe
/// of its frame, and becomes bytes only in the reader's buffer. Not thread-safe.
class SendQueue
{
public:
    /// A piece of what has arrived: reply bytes, or else image data.
    struct Chunk
    {
        QByteArray bytes;
        FrameRecipe recipe;
        qsizetype offset = 0; ///< in the frame
        qsizetype length = 0;
        bool isImage = false;
    };

    /// What a bridge has until it is told otherwise.
    static constexpr Milliseconds usualLatency{16};

    /// How long a reply, which does not fill a transfer, waits in the bridge.
    void setLatency(Milliseconds latency) { m_latency = latency; }

    /// A reply that leaves the detector at that time.
    void appendReply(const QByteArray &bytes, Nanoseconds leaves);
    /// Image data that leaves the detector at that time: bytes of a frame from `offset` on.
    void appendImage(const FrameRecipe &recipe, qsizetype offset, qsizetype length, Nanoseconds leaves);

    /// Bytes that a reader can have now. Nothing overtakes what was appended before it.
    [[nodiscard]] qsizetype available(Nanoseconds now) const;
    /// When the next bytes that are not available yet arrive; none when there are none.
    [[nodiscard]] std::optional<Nanoseconds> nextArrival(Nanoseconds now) const;
    /// Takes the first available bytes, `longest` at most, and when they are image data `longestImage` at
    /// most. A chunk without length when there are none.
    [[nodiscard]] Chunk take(qsizetype longest, qsizetype longestImage, Nanoseconds now);

    /// Drops what has left the detector.
    void purge(Nanoseconds now);
    /// Drops the image data that has not left the detector.
    void dropUnsentImage(Nanoseconds now);

    /// Image bytes taken since the last restart of the count.
    [[nodiscard]] qint64 imageBytesTaken() const { return m_imageBytesTaken; }
    void restartImageCount() { m_imageBytesTaken = 0; }

private:
    struct Segment
    {
        Chunk chunk;
        Nanoseconds leaves;
        Nanoseconds arrives;
    };

    std::vector<Segment> m_segments;
    Milliseconds m_latency = usualLatency;
    qint64 m_imageBytesTaken = 0;
};

} // namespace simulator
