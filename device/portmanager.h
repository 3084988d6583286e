#pragma once

#include "device/linkstate.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

class QThread;

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

    /// Makes the one link, closed. Without a driver set before, the default driver library is loaded.
    static void createInstance();

    /// Ends the receive thread, closes the device and deletes the link, if there is one. Waits for the
    /// thread, some 100 ms at most.
    static void destroyInstance();

    /// The link of this process; null before createInstance() and after destroyInstance().
    [[nodiscard]] static PortManager *instance();

    ~PortManager() override;

    /// Serial numbers of the attached devices in the driver's order; empty on any failure.
    QList<QString> listDevices();

    /// Opens the device and sets up its bridge (synchronous FIFO, 64 KiB transfers, 10 ms time-outs).
    /// False when it cannot be opened; the set-up calls themselves are not checked.
    bool openDevice(QString serialNumber);

    /// Closes the device if one is open. The receive thread goes on polling, without reading.
    void closeDevice();

    /// Starts receiving: the next block that arrives is the first of a frame. Creates the thread the first
    /// time, later lets it go on. Does not block.
    void startReceive();

    /// Slows the receive loop to one pass per 100 ms until startReceive() is called again. A pause before
    /// the first start outlasts that start.
    void pauseReceive();

    /// Asks the receive loop to halt the detector at the next block boundary and then to emit stop().
    void requestStop() { m_state.m_stopRequested = true; }

    /// Sends all bytes with one call; blocks for 10 ms at most. Failures are ignored.
    void write(QByteArray bytes);

    /// Waits for a reply of exactly `expectedBytes` bytes and returns what arrived as upper-case hexadecimal
    /// text, also when that is less or more. Polls without sleeping, for `timeoutMs` at most.
    QByteArray wait_for_read(int timeoutMs, int expectedBytes);

Q_SIGNALS:
    /// One image frame, 4194304 bytes or a little more (what came with the last block). Receive thread.
    void read_ready(QByteArray m_data);

    /// The detector was told to halt after requestStop(); nothing further is read. Receive thread.
    void stop();

private:
    explicit PortManager(std::shared_ptr<D2xx> driver);

    void configureDevice();
    void startThread();
    void receiveLoop();
    void handOn(const QByteArray &frame);

    LinkState m_state;
    QList<QString> m_portList;          ///< of the last successful enumeration
    QThread *m_receiveThread = nullptr; ///< owned; made on the first startReceive()
    /// Lives on the GUI thread, whose events tell it that a frame is through.
    std::unique_ptr<QObject> m_frameCounter;
};
