#pragma once

#include "device/d2xx.h"

#include <QByteArray>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>

/// What the GUI thread and the receive thread share of the link: the driver, the handle and the flags.
/// Nothing is locked; each flag has the writers told here, and order matters only where it is told.
///
/// | State      | m_handle | m_halted | m_paused | m_stopRequested | the loop                             |
/// |------------|----------|----------|----------|-----------------|--------------------------------------|
/// | closed     | null     | any      | any      | any             | polls without reading                |
/// | idle       | set      | true     | any      | any             | polls without reading                |
/// | receiving  | set      | false    | false    | false           | reads and requests blocks            |
/// | slow start | set      | false    | true     | false           | the same, one pass per 100 ms        |
/// | stopping   | set      | false    | any      | true            | reads on, halts at a boundary or in
/// silence |
///
/// Before the first start m_halted may be false: there is no loop yet. A slow start comes of a pause before
/// the first start, which outlasts it. An open that failed leaves in m_handle what the library left there, an
/// earlier handle included, and closing closes it. m_restarted is true from a start until the loop's next
/// pass, in every state. m_lost goes with "idle": the handle is dead, and only closing helps.
///
/// Rules of their order:
/// 1. begin() writes m_stopRequested, then m_restarted, then m_halted: a pass that sees the halt lifted sees
///    the restart too. It goes on with what was received before, unless m_closed tells that the device was
///    closed in between.
/// 2. The loop reads m_halted before it takes m_restarted, and m_handle once a pass: what a pass still does
///    after the device was closed fails on the handle that it took, instead of taking bytes of the next
///    connection or writing to it.
/// 3. close() writes m_halted before it takes the handle back: a loop that was cut off in mid-frame must not
///    read the replies of the next connection.
/// 4. A halt that meets a start: the loop sets m_halted, and lifts it again when m_restarted is set by then.
///    A halt that meets a halt of the other thread: who sets m_halted sends the halt frame, the other does
///    not.
/// 5. m_framesDone is raised on the GUI thread, by an event behind the frame's own: after all there that the
///    frame was handed to is through with it. The loop only compares it.
/// 6. m_framesHandedOn is raised before the frame's event goes out, so that it is never behind m_framesDone.
///
/// All are sequentially consistent; none is written per block.
class LinkState
{
public:
    explicit LinkState(std::shared_ptr<D2xx> driver) : m_driver(std::move(driver)) {}
    Q_DISABLE_COPY_MOVE(LinkState)

    /// The longest read, whatever a driver library says how much there is: a frame is 4 MiB.
    static constexpr quint32 longestRead = 64U << 20U;

    /// GUI thread: receiving starts.
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
        m_closed = true;
        const d2xx::Handle handle = m_handle.exchange(nullptr);
        m_lost = false;
        return handle;
    }

    /// Receive thread: nothing is read any more. True when this thread is the one to tell the detector; false
    /// when the other did, and when a start came meanwhile, which stays in force.
    [[nodiscard]] bool halt()
    {
        if (!takeHalt())
            return false;
        if (!m_restarted)
            return true;
        m_halted = false;
        return false;
    }

    /// Any thread: nothing is read any more. True when it was this call that ended the reading.
    [[nodiscard]] bool takeHalt() { return !m_halted.exchange(true); }

    /// Any thread: the device behind the handle is gone, nothing is read any more. True for the first to say
    /// so of the open handle.
    [[nodiscard]] bool lose(d2xx::Handle handle)
    {
        if (handle == nullptr || handle != m_handle || m_lost.exchange(true))
            return false;
        m_halted = true;
        return true;
    }

    /// Bytes in the receive queue, as many as one read may take; none when the status call fails: a pulled
    /// cable must not make anybody read for ever. Any thread.
    [[nodiscard]] std::optional<quint32> bytesWaiting(d2xx::Handle handle)
    {
        quint32 rxBytes = 0;
        quint32 txBytes = 0;
        quint32 events = 0;
        if (m_driver->getStatus(handle, &rxBytes, &txBytes, &events) != d2xx::Status::Ok)
            return std::nullopt;
        return std::min(rxBytes, longestRead);
    }

    /// Reads up to `waiting` bytes; none when the read fails, whatever it took from the queue. Any thread.
    [[nodiscard]] std::optional<quint32> read(d2xx::Handle handle, char *room, quint32 waiting)
    {
        quint32 bytesRead = 0;
        if (m_driver->read(handle, room, waiting, &bytesRead) != d2xx::Status::Ok)
            return std::nullopt;
        return std::min(bytesRead, waiting);
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
    std::atomic<bool> m_restarted{false};        ///< a start came; GUI sets, the loop takes
    std::atomic<bool> m_closed{false};       ///< begin with an empty accumulator; GUI sets, the loop takes
    std::atomic<bool> m_lost{false};         ///< the open device is gone; both set, opening and closing clear
    std::atomic<qint64> m_framesHandedOn{0}; ///< receive thread writes
    std::atomic<qint64> m_framesDone{0};     ///< frames handed on that are through; GUI thread writes
};
