#pragma once

#include "d2xx/types.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ftdi {

using d2xx::Status;

/// An open bridge, as thin as it can be: one member, one request to the chip.
///
/// read(), isGone(), ending() and stopReading() belong to one reader. The others may run beside a read(), but
/// not beside each other; losses() and isPluggedIn() at any time. False, or none, says that the bridge did
/// not take it.
///
/// The end of it puts the bridge's lines back into the mode in which it has them when it is plugged in.
class UsbPort
{
public:
    UsbPort() = default;
    UsbPort(const UsbPort &) = delete;
    UsbPort &operator=(const UsbPort &) = delete;
    virtual ~UsbPort() = default;

    virtual bool reset() = 0;
    virtual bool setBitMode(std::uint8_t mask, std::uint8_t mode) = 0;
    virtual bool setLatencyTimer(std::uint8_t milliseconds) = 0;
    virtual bool setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff) = 0;
    /// Empties the buffers in the chip.
    virtual bool purge(bool received, bool sent) = 0;
    /// Bytes of one USB transfer; counts for the transfers that begin after it.
    virtual void setTransferSizes(std::size_t in, std::size_t out) = 0;

    /// The next bytes that arrived, valid until the next call; empty when there were none for `patience`.
    /// None when the bridge is gone or cannot be read any more, and everything that arrived before was
    /// returned.
    virtual std::optional<std::span<const std::uint8_t>> read(std::chrono::milliseconds patience) = 0;
    /// The bridge was unplugged; what arrived before may still be read.
    virtual bool isGone() = 0;
    /// What the system says, which may know of an unplug before a transfer fails, or after.
    [[nodiscard]] virtual bool isPluggedIn() const = 0;
    /// Why read() returned none, in words.
    [[nodiscard]] virtual std::string ending() const = 0;
    /// How often the chip said that bytes were lost before they could be read.
    [[nodiscard]] virtual std::uint32_t losses() const = 0;
    /// Drops what is on its way from the chip. The next read() begins afresh.
    virtual void stopReading() = 0;

    /// Sends the first bytes, one transfer at most, and tells how many left within `patience`. A transfer
    /// that fails is tried again a few times.
    virtual std::optional<std::size_t> write(std::span<const std::uint8_t> bytes,
                                             std::chrono::milliseconds patience) = 0;
};

/// A bridge that is plugged in, or one channel of it.
struct BridgeInfo
{
    std::string serialNumber; ///< 15 bytes at most
    std::string description;
    std::uint32_t type = 0;
    std::uint32_t id = 0;
    std::uint32_t locationId = 0;
    bool isHighSpeed = false;
};

/// How opening went.
struct Refusal
{
    Status status = Status::Ok;
    std::string reason; ///< empty when it was opened
};

/// The USB of this computer.
class UsbBus
{
public:
    UsbBus() = default;
    UsbBus(const UsbBus &) = delete;
    UsbBus &operator=(const UsbBus &) = delete;
    virtual ~UsbBus() = default;

    /// The bridges that are plugged in, whoever holds them; none when the USB cannot be used at all.
    virtual std::optional<std::vector<BridgeInfo>> list() = 0;
    /// A refusal is told in words too: what holds it up, and what helps. Blocks for 2 s at most.
    virtual Refusal open(const std::string &serialNumber, std::unique_ptr<UsbPort> &port) = 0;
};

} // namespace ftdi
