#pragma once

#include "device/detectornames.h"
#include "device/linkstate.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QThread;

/// An attached device of the driver library's make, as its list told it.
struct AttachedBridge
{
    QString serialNumber;
    QString description; ///< the product's text
    bool isDetector = true;
    bool isOpen = false; ///< in this process; of others a list does not tell
};

/// The program's single link to the detector: finds and opens it by its serial number, exchanges commands,
/// and receives image frames on a thread of its own.
///
/// The log must exist before the link is made. Unless said otherwise a method runs on the GUI thread, also
/// after the object was moved to its receive thread. Commands may be exchanged only before the first
/// startReceive() or while the loop is halted: while it runs it would read their replies.
class PortManager : public QObject
{
    Q_OBJECT

public:
    /// Sets the driver library that the next createInstance() uses.
    static void setDriver(std::shared_ptr<D2xx> driver);

    /// Sets which bridges the next link takes for detectors.
    static void setDetectorNames(const DetectorNames &names);

    /// Makes the one link, closed. Without a driver set before, the default driver library is loaded.
    static void createInstance();

    /// Ends the receive thread, closes the device and deletes the link, if there is one. Waits for the
    /// thread, some 100 ms at most; when a call of the library hangs, 4 s at most, and leaves both behind.
    static void destroyInstance();

    /// The link of this process; null before createInstance() and after destroyInstance().
    [[nodiscard]] static PortManager *instance();

    ~PortManager() override;

    /// Serial numbers of the attached devices in the driver's order; empty on any failure.
    QList<QString> listDevices();
    /// The last listDevices() did not fail: what it did not list is not there.
    [[nodiscard]] bool isListed() const { return m_isListed; }

    /// Those of the last list, in its order; none after one that failed.
    [[nodiscard]] const QList<AttachedBridge> &bridges() const { return m_bridges; }
    /// Those that are detectors: see DetectorNames.
    [[nodiscard]] QStringList detectors() const { return serialNumbers(true); }
    /// Those that are not: devices of other people, to be opened only when the operator names them.
    [[nodiscard]] QStringList otherBridges() const { return serialNumbers(false); }

    /// Opens the device and sets up its bridge (synchronous FIFO, 64 KiB transfers, 10 ms time-outs).
    /// False when it cannot be opened; the set-up calls themselves are not checked.
    bool openDevice(QString serialNumber);

    /// Closes the device if one is open. The receive thread goes on polling, without reading. Blocks for 2 s
    /// at most, when a call of the library hangs.
    void closeDevice();

    /// Starts receiving: creates the thread the first time, later lets it go on with what it has received,
    /// unless the device was closed in between. Does not block.
    void startReceive();

    /// Slows the receive loop to one pass per 100 ms until startReceive() is called again. A pause before
    /// the first start outlasts that start.
    void pauseReceive();

    /// Asks the receive loop to halt the detector at the next block boundary, or after 5 s of silence, and
    /// then to emit stop().
    void requestStop() { m_state.m_stopRequested = true; }

    /// Ends the reading at once and tells the detector to halt, unless the receive loop has done that by now;
    /// stop() is not emitted then. Only while it is receiving. Blocks for 10 ms at most.
    void halt();

    /// Sends all bytes with one call; blocks for 10 ms at most. Failures are ignored.
    void write(QByteArray bytes);

    /// Waits for a reply of exactly `expectedBytes` bytes and returns what arrived as upper-case hexadecimal
    /// text, also when that is less or more. Polls without sleeping, for `timeoutMs` at most. When the status
    /// could not be had all the time, the device is lost.
    QByteArray wait_for_read(int timeoutMs, int expectedBytes);

    /// The last wait_for_read() ended with exactly the reply that it waited for, and nobody doubted it, or
    /// the device was opened or closed since. Otherwise a late reply may still arrive, and would be taken for
    /// the next one.
    [[nodiscard]] bool isSettled() const { return m_isSettled; }
    /// The last reply was not that of the command.
    void unsettle() { m_isSettled = false; }

    /// Reads and drops what waits, and what arrives within `durationMs`. Ends 500 ms later at most. Only when
    /// nothing is being received.
    void dropWaiting(int durationMs = 0);

    /// A start or a halt was sent and not confirmed, or a command met with silence: the detector may be
    /// streaming all the same. Until the next word on it, and until the device is opened or closed.
    [[nodiscard]] bool mayBeStreaming() const { return m_mayBeStreaming; }
    void setMayBeStreaming(bool mayBe) { m_mayBeStreaming = mayBe; }

    /// Frames that were handed on and are not through on the GUI thread; the one that is being worked at
    /// counts.
    [[nodiscard]] qint64 framesWaiting() const { return m_state.m_framesHandedOn - m_state.m_framesDone; }

    /// The open device is gone; only closing it helps. Any thread.
    [[nodiscard]] bool isLost() const { return m_state.m_lost; }

    /// In words why the open device is gone, or without one why the last was not opened; empty when the
    /// driver library does not say.
    [[nodiscard]] QString problem() const { return m_state.m_driver->problem(m_state.m_handle); }

    /// Asks the open device for its status, once; true when it cannot be had or the driver library knows that
    /// it is gone, and the device is lost by that or was before. Without a device false. Does not emit
    /// lost().
    bool checkLost();

Q_SIGNALS:
    /// One image frame, 4194304 bytes or a little more (what came with the last block). Receive thread.
    void read_ready(QByteArray m_data);

    /// The detector was told to halt after requestStop(); nothing further is read. Receive thread.
    void stop();

    /// While a block is owed nothing has come for 5 s (true), or the next byte has come (false). Receive
    /// thread.
    void interrupted(bool isInterrupted);

    /// The bridge says that it lost bytes, so often since the start: at once, and then every 10 s while it
    /// goes on. Receive thread.
    void bytesLost(quint32 times);

    /// The open device is gone: its status could not be had for a whole second of an acquisition or during a
    /// whole exchange. Nothing is read any more. From either thread: connect it queued.
    void lost();

private:
    friend class LinkInspector; // what the tests look at

    PortManager(std::shared_ptr<D2xx> driver, DetectorNames detectorNames);

    [[nodiscard]] QStringList serialNumbers(bool ofDetectors) const;
    void configureDevice();
    void startThread();
    void receiveLoop();
    void handOn(const QByteArray &frame);
    /// The bytes that a read of what waits brings; none when it fails.
    [[nodiscard]] std::optional<QByteArray> readWaiting(quint32 waiting);
    bool lose(d2xx::Handle handle);
    void settle();
    /// False when the receive thread could not be ended.
    bool end();

    LinkState m_state;
    const DetectorNames m_detectorNames;
    QList<AttachedBridge> m_bridges; ///< of the last enumeration
    bool m_isListed = false;
    bool m_isSettled = true;
    bool m_mayBeStreaming = false;
    QThread *m_receiveThread = nullptr; ///< owned; made on the first startReceive()
    /// Lives on the GUI thread, whose events tell it that a frame is through.
    std::unique_ptr<QObject> m_frameCounter;
};
