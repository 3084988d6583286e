#pragma once

#include "device/d2xx.h"

#include <QByteArray>

#include <atomic>
#include <memory>

/// What the GUI thread and the receive thread share of the link: the driver, the handle and the flags.
/// Nothing is locked; each flag has the writers told here, and order matters only where it is told.
///
/// | State      | m_handle | m_halted | m_paused | m_stopRequested | the loop                             |
/// |------------|----------|----------|----------|-----------------|--------------------------------------|
/// | closed     | null     | any      | any      | any             | polls without reading                |
/// | idle       | set      | true     | any      | any             | polls without reading                |
/// | receiving  | set      | false    | false    | false           | reads and requests blocks            |
/// | slow start | set      | false    | true     | false           | the same, one pass per 100 ms        |
/// | stopping   | set      | false    | any      | true            | reads on, halts at the next boundary |
///
/// Before the first start m_halted may be false: there is no loop yet. A slow start comes of a pause before
/// the first start, which outlasts it. An open that failed leaves in m_handle what the library left there;
/// D2xx refuses every call on it. m_restarted is true from a start until the loop's next pass, in every
/// state.
///
/// Rules of their order:
/// 1. begin() writes m_stopRequested, then m_restarted, then m_halted: a pass that sees the halt lifted sees
///    the restart too, and begins with an empty accumulator.
/// 2. The loop reads m_halted before it takes m_restarted, and m_handle once a pass: what a pass still does
///    after the device was closed fails on the handle that it took, instead of taking bytes of the next
///    connection or writing to it.
/// 3. close() writes m_halted before it takes the handle back: a loop that was cut off in mid-frame must not
///    read the replies of the next connection.
/// 4. A halt that meets a start: the loop sets m_halted, and lifts it again when m_restarted is set by then.
/// 5. m_framesDone is raised on the GUI thread, by an event behind the frame's own: after all there that the
///    frame was handed to is through with it. The loop only compares it.
///
/// All are sequentially consistent; none is written per block.
class LinkState
{
public:
    explicit LinkState(std::shared_ptr<D2xx> driver) : m_driver(std::move(driver)) {}
    Q_DISABLE_COPY_MOVE(LinkState)

    /// GUI thread: receiving starts, and the next block that arrives is the first of a frame.
    void begin()
    {
        m_stopRequested = false;
        m_restarted = true;
        m_halted = false;
    }

    /// GUI thread: nothing is read any more. Returns the handle that was open, or null.
    [[nodiscard]] d2xx::Handle close()
    {
        m_halted = true;
        return m_handle.exchange(nullptr);
    }

    /// Receive thread: nothing is read any more. False when a start came meanwhile, which stays in force.
    [[nodiscard]] bool halt()
    {
        m_halted = true;
        if (!m_restarted)
            return true;
        m_halted = false;
        return false;
    }

    /// Bytes in the receive queue. Without a status nothing counts as waiting: a pulled cable must not make
    /// anybody read for ever. Any thread.
    [[nodiscard]] quint32 bytesWaiting(d2xx::Handle handle)
    {
        quint32 rxBytes = 0;
        quint32 txBytes = 0;
        quint32 events = 0;
        const d2xx::Status status = m_driver->getStatus(handle, &rxBytes, &txBytes, &events);
        return status == d2xx::Status::Ok ? rxBytes : 0;
    }

    /// One call with all bytes; what comes of it is ignored. Any thread.
    void write(d2xx::Handle handle, const QByteArray &bytes)
    {
        quint32 written = 0;
        m_driver->write(handle, bytes.constData(), static_cast<quint32>(bytes.size()), &written);
    }

    const std::shared_ptr<D2xx> m_driver;
    std::atomic<d2xx::Handle> m_handle{nullptr}; ///< of the open device; GUI thread writes
    std::atomic<bool> m_stopRequested{false};    ///< halt at the next block boundary; GUI thread writes
    std::atomic<bool> m_paused{false};           ///< one pass per 100 ms; GUI thread writes
    std::atomic<bool> m_halted{false};           ///< no reading; both write
    std::atomic<bool> m_restarted{false}; ///< begin with an empty accumulator; GUI sets, the loop takes
    std::atomic<qint64> m_framesDone{0};  ///< frames handed on that are through; GUI thread writes
};
