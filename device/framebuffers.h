#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <deque>

/// Buffers for image frames, used over and over: a frame that everybody has let go of becomes room for a new
/// one. The receive loop's own; not thread-safe.
class FrameBuffers
{
public:
    /// An empty buffer with room for a frame and some more. `framesDone`: so many of the lent frames are
    /// through; only their buffers are looked at, since only of those it is certain what other threads did.
    [[nodiscard]] QByteArray take(qint64 framesDone);

    /// Remembers a frame that is about to be handed on, in the order of handing on.
    void lend(const QByteArray &frame);

    /// Frames lent so far.
    [[nodiscard]] qint64 lentCount() const { return m_lentCount; }

private:
    std::deque<QByteArray> m_lent; ///< the last ones lent, oldest first
    qint64 m_lentCount = 0;
};
