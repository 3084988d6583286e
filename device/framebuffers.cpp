#include "device/framebuffers.h"

#include "device/protocol/frameformat.h"

#include <utility>

QByteArray FrameBuffers::take(qint64 framesDone)
{
    while (!m_lent.empty() && m_lentCount - static_cast<qint64>(m_lent.size()) < framesDone) {
        QByteArray oldest = std::move(m_lent.front());
        m_lent.pop_front();
        if (oldest.isDetached()) {
            // Who let go of it last may have done so on another thread, and looking alone does not order what
            // was read there before what is written here: taking another share does.
            static_cast<void>(QByteArray(oldest));
            oldest.resize(0);
            return oldest;
        }
        // Somebody keeps the frame: it is theirs now.
    }
    QByteArray fresh;
    fresh.reserve(FrameFormat::frameBytes + FrameFormat::blockBytes);
    return fresh;
}

void FrameBuffers::lend(const QByteArray &frame)
{
    m_lent.push_back(frame);
    ++m_lentCount;
}
