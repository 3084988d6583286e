#pragma once

#include "ftdi/usbport.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>

/// A bridge chip that the test drives by hand: what it delivers, what it takes, and when it is pulled out.
/// Thread-safe.
class FakeChip
{
public:
    using Bytes = std::vector<std::uint8_t>;

    /// What the next reads return, one piece each.
    void deliver(Bytes piece);
    /// What was delivered before can still be read.
    void unplug();
    /// The system knows that it was pulled out; transfers do not tell yet.
    void unlist();
    void loseBytes();
    /// From now on, at most that many bytes of a write leave; a write of which nothing leaves waits.
    void takeAtMost(std::size_t bytes);
    /// From now on requests fail, and transfers outward.
    void refuse();

    [[nodiscard]] Bytes sent() const;
    /// What was asked of it, in order: "reset", "stop reading", "latency 2" ...
    [[nodiscard]] std::vector<std::string> requests() const;
    [[nodiscard]] std::size_t undelivered() const;
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] std::size_t writesBegun() const;

private:
    friend class FakePort;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Bytes> m_pieces;
    std::vector<std::string> m_requests;
    Bytes m_sent;
    std::size_t m_takesAtMost = SIZE_MAX;
    std::size_t m_writesBegun = 0;
    bool m_isUnplugged = false;
    bool m_isListed = true;
    bool m_refuses = false;
    std::uint32_t m_losses = 0;
    bool m_isOpen = false;
};

class FakePort : public ftdi::UsbPort
{
public:
    explicit FakePort(std::shared_ptr<FakeChip> chip);
    ~FakePort() override;

    bool reset() override;
    bool setBitMode(std::uint8_t mask, std::uint8_t mode) override;
    bool setLatencyTimer(std::uint8_t milliseconds) override;
    bool setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff) override;
    bool purge(bool received, bool sent) override;
    void setTransferSizes(std::size_t in, std::size_t out) override;
    std::optional<std::span<const std::uint8_t>> read(std::chrono::milliseconds patience) override;
    bool isGone() override;
    [[nodiscard]] bool isPluggedIn() const override;
    [[nodiscard]] std::string ending() const override { return "pulled out"; }
    [[nodiscard]] std::uint32_t losses() const override;
    void stopReading() override;
    std::optional<std::size_t> write(std::span<const std::uint8_t> bytes,
                                     std::chrono::milliseconds patience) override;

private:
    bool note(const std::string &request);

    const std::shared_ptr<FakeChip> m_chip;
    FakeChip::Bytes m_lastPiece;
};

/// A USB with those bridges plugged in.
class FakeBus : public ftdi::UsbBus
{
public:
    struct Entry
    {
        ftdi::BridgeInfo info;
        std::shared_ptr<FakeChip> chip;
    };

    std::optional<std::vector<ftdi::BridgeInfo>> list() override;
    ftdi::Refusal open(const std::string &serialNumber, std::unique_ptr<ftdi::UsbPort> &port) override;

    std::shared_ptr<FakeChip> plugIn(const std::string &serialNumber);

    std::vector<Entry> entries;
    bool isUsable = true;
    bool isHeldElsewhere = false;
};
