#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

struct libusb_context;
struct libusb_device_handle;
struct libusb_transfer;

namespace ftdi {

/// Takes out the two status bytes with which the bridge begins each packet, in place.
std::span<std::uint8_t> withoutStatusBytes(std::span<std::uint8_t> transfer, std::size_t packetSize);

/// Reads a bulk endpoint with many transfers under way, so that the next ones are already waiting for data
/// while one is being looked at. They end in the order in which they were begun. For one thread.
class BulkReader
{
public:
    /// What is read from.
    struct Source
    {
        libusb_context *context;
        libusb_device_handle *device;
        std::uint8_t endpoint;
        std::size_t packetSize;
    };

    explicit BulkReader(const Source &source);
    BulkReader(const BulkReader &) = delete;
    BulkReader &operator=(const BulkReader &) = delete;
    ~BulkReader();

    /// Bytes that the next transfer asks for, whole packets, one at least; 65536 at most.
    void setTransferSize(std::size_t size);

    /// As UsbPort::read().
    std::optional<std::span<const std::uint8_t>> read(std::chrono::milliseconds patience);
    /// As UsbPort::stopReading(). Waits until the last transfer has ended, one second at most.
    void stop();

private:
    struct Transfer;

    static void noteEnd(libusb_transfer *usb);
    bool submit(Transfer &transfer);
    bool start();
    bool handleEvents(std::chrono::milliseconds patience, int *completed);

    const Source m_source;
    std::size_t m_transferSize;
    static constexpr std::size_t transferCount = 16;
    std::array<std::unique_ptr<Transfer>, transferCount> m_transfers;
    std::size_t m_oldest = 0;
    Transfer *m_handedOut = nullptr; ///< its bytes were returned last
    bool m_isReading = false;
};

} // namespace ftdi
