#pragma once

#include "ftdi/receivequeue.h"
#include "ftdi/usbport.h"

#include <atomic>
#include <thread>

namespace ftdi {

/// An open bridge with a thread that keeps reading it into a queue, so that the cable is never idle while the
/// program is busy. When the queue is full the thread waits, and with it the bridge: nothing is lost.
///
/// All members may be called from any thread. After the bridge is gone, everything returns IoError, but that
/// what arrived before is counted and read first; after close(), InvalidHandle. Null pointers and values that
/// the bridge does not know are InvalidParameter.
class OpenDevice
{
public:
    static constexpr std::size_t usualQueueSize = std::size_t{64} * 1024 * 1024;

    explicit OpenDevice(std::unique_ptr<UsbPort> port, std::size_t queueSize = usualQueueSize);
    OpenDevice(const OpenDevice &) = delete;
    OpenDevice &operator=(const OpenDevice &) = delete;
    ~OpenDevice();

    /// Ends the calls that wait, and lets go of the bridge. Waits for a request that is under way at the
    /// chip, half a second at most.
    void close();
    /// Ok, IoError when the bridge is gone, InvalidHandle when it was closed.
    [[nodiscard]] Status status() const { return m_queue.status(); }
    /// Why the bridge is gone, in words; empty as long as it is not. Of an unplugged one it is told even
    /// before status() does: the system is asked, some milliseconds.
    [[nodiscard]] std::string ending();
    /// How often the chip said that bytes were lost, since the bridge was opened.
    Status losses(std::uint32_t *count) const;

    /// Drops what was not read.
    Status reset();
    Status setBitMode(std::uint8_t mask, std::uint8_t mode);
    Status setLatencyTimer(std::uint8_t milliseconds);
    /// 64 to 65536 bytes in steps of 64.
    Status setTransferSizes(std::uint32_t in, std::uint32_t out);
    Status setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff);
    /// Bit 0: drops everything that arrived before the call; bit 1: what is not sent yet.
    Status purge(std::uint32_t mask);
    /// 0 waits without limit, which is also how it begins.
    Status setTimeouts(std::uint32_t readMs, std::uint32_t writeMs);

    /// Bytes that can be read at once. Does not wait for the bridge.
    Status queued(std::uint32_t *rxBytes, std::uint32_t *txBytes, std::uint32_t *events) const;
    /// Waits until `length` bytes have arrived, for the read time-out at most, and returns what there is.
    Status read(void *buffer, std::uint32_t length, std::uint32_t *bytesRead);
    /// Returns when all is sent or the write time-out is over. When the bridge does not take it, this is the
    /// end of the connection: IoError, as from everything after it.
    Status write(const void *buffer, std::uint32_t length, std::uint32_t *bytesWritten);

private:
    template <typename Call>
    Status onPort(Call call);
    template <typename Call>
    Status withoutReader(Call call);
    void startReader();
    void stopReader();
    void readOn(const std::stop_token &stop);
    void append(std::span<const std::uint8_t> bytes, const std::stop_token &stop);
    void noteEnding(const std::string &why);

    std::mutex m_portMutex;          // guards the port, but for its reading, and the thread
    std::unique_ptr<UsbPort> m_port; ///< changed only with the other mutex too
    std::atomic<std::uint32_t> m_losses{0};
    std::mutex m_endingMutex; // guards the next, and that the port stays; taken after the other
    std::string m_ending;
    ReceiveQueue m_queue;
    std::atomic<std::uint32_t> m_readTimeout{0};
    std::atomic<std::uint32_t> m_writeTimeout{0};
    std::jthread m_reader;
};

} // namespace ftdi
