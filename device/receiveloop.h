#pragma once

#include "device/blockassembler.h"
#include "device/framebuffers.h"
#include "device/linkstate.h"
#include "device/losswatch.h"
#include "device/repeatedfailures.h"
#include "device/shortrest.h"
#include "device/streamwatch.h"

#include <QElapsedTimer>

#include <array>
#include <functional>

/// The work of the receive thread: reads what waits, acknowledges each block, hands on each frame, halts the
/// detector on request. Lives on that thread and ends when its interruption is requested.
///
/// Memory stays bounded: when 64 frames wait on the GUI thread, the request for the next frame's first block
/// is held back until half of them are through. The handshake makes the detector wait, so nothing is lost.
///
/// A stream that falls silent is told, a stop that no byte follows is carried out all the same, and a device
/// whose status cannot be had any more is given up: see StreamWatch. An exception ends the pass in which it
/// came, is logged, and counts as silence.
class ReceiveLoop
{
public:
    /// What it tells, on its own thread.
    struct Callbacks
    {
        /// A whole frame. That it is through comes back by LinkState::m_framesDone.
        std::function<void(const QByteArray &)> frame;
        /// The detector was told to halt.
        std::function<void()> halted;
        /// A block is owed and nothing comes any more (true), or the next byte has come (false).
        std::function<void(bool)> interrupted;
        /// The bridge lost bytes, so often since the start.
        std::function<void(quint32)> bytesLost;
        /// The device behind the handle is gone.
        std::function<void(d2xx::Handle)> lost;
    };

    /// `state` must outlive it.
    ReceiveLoop(LinkState &state, Callbacks callbacks);

    void run();

private:
    void pass();
    void takeStart();
    void receive(quint32 waiting);
    void readFailed();
    void passFailed();
    void lookForLosses();
    void judge(StreamWatch::Event event);
    void handleBlockBoundary();
    void handOnFrame();
    void tellSurplus();
    void halt();
    void requestNextBlock();
    [[nodiscard]] qint64 framesWaiting() const;

    LinkState &m_state;
    const Callbacks m_callbacks;
    d2xx::Handle m_handle = nullptr; ///< of the current pass
    ShortRest m_rest;                ///< of a pass in which nothing came
    QElapsedTimer m_clock;
    StreamWatch m_watch;
    LossWatch m_lossWatch;
    LossWatch m_surplusWatch; ///< of frames that got more than they hold
    quint32 m_surplusFrames = 0;
    RepeatedFailures m_failedReads{QStringLiteral("串口线程接收数据失败")};
    RepeatedFailures m_exceptions{QStringLiteral("串口接收线程异常")};
    BlockAssembler m_assembler;
    FrameBuffers m_buffers;
    /// By counter; made once, not per block.
    std::array<QByteArray, FrameFormat::blocksPerFrame> m_blockRequests;
    bool m_heldBack = false; ///< a block request is due as soon as enough frames are through
};
