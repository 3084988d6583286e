#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct libusb_context;
struct libusb_device_handle;
struct libusb_transfer;

namespace ftdi {

/// Reads a bulk endpoint with many transfers under way, so that the next ones are already waiting for data
/// while one is being looked at. They end in the order in which they were begun. For one thread, but for
/// losses().
///
/// A transfer that fails ends the others. What they all brought is returned first. Then a stall or a protocol
/// error is cleared and reading goes on, unless it fails mostTries times without a good transfer in between.
/// It is cleared at once for the first time, then `betweenTries` apart: when the cable is pulled, transfers
/// fail for up to 256 ms before the hub is asked and the system knows why.
class BulkReader
{
public:
    static constexpr int mostTries = 5;
    static constexpr std::chrono::milliseconds betweenTries{100};

    /// What is read from.
    struct Source
    {
        libusb_context *context;
        libusb_device_handle *device;
        std::uint8_t endpoint;
        std::size_t packetSize; ///< not 0
    };

    explicit BulkReader(const Source &source);
    BulkReader(const BulkReader &) = delete;
    BulkReader &operator=(const BulkReader &) = delete;
    ~BulkReader();

    /// Bytes that the next transfer asks for, whole packets, one at least; 65536 at most.
    void setTransferSize(std::size_t size);

    /// As UsbPort::read(). Where the system has no memory for all transfers it goes on with fewer, and with
    /// none it waits for memory.
    std::optional<std::span<const std::uint8_t>> read(std::chrono::milliseconds patience);
    /// As UsbPort::isGone(). Does not wait.
    bool isGone();
    /// Why read() returned none, in words.
    [[nodiscard]] const std::string &ending() const { return m_ending; }
    /// As UsbPort::losses(). Any thread.
    [[nodiscard]] std::uint32_t losses() const { return m_losses; }

    /// As UsbPort::stopReading(). Waits until the last transfer has ended, one second at most. False when
    /// the system did not give all of them back.
    bool stop();

private:
    struct Transfer;
    using Bytes = std::span<const std::uint8_t>;

    static void noteEnd(libusb_transfer *usb);
    int submit(Transfer &transfer);
    void submitAll();
    bool handleEvents(std::chrono::milliseconds patience, int *completed);
    Bytes takeOldest();
    void beginDraining(int failure);
    void cancelAll();
    bool abandonAll();
    std::optional<Bytes> withNoneUnderWay(std::chrono::milliseconds patience);
    bool mend();
    std::optional<Bytes> endBy(int failure);

    /// Draining: a transfer has failed, and what is under way was told to end.
    enum class Phase { Idle, Reading, Draining, Over };

    const Source m_source;
    std::size_t m_transferSize;
    static constexpr std::size_t transferCount = 16;
    std::array<std::unique_ptr<Transfer>, transferCount> m_transfers;
    std::vector<Transfer *> m_idle;
    std::deque<Transfer *> m_underWay;  ///< oldest first, also those that have ended
    Transfer *m_handedOut = nullptr;    ///< its bytes were returned last
    std::size_t m_most = transferCount; ///< for which there is memory
    Phase m_phase = Phase::Idle;
    int m_failure = 0; ///< status of the transfer that failed
    int m_tries = 0;
    std::chrono::steady_clock::time_point m_drainDeadline;
    std::chrono::steady_clock::time_point m_lastTry;
    std::string m_ending;
    std::atomic<std::uint32_t> m_losses{0};
};

} // namespace ftdi
