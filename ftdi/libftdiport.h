#pragma once

#include "ftdi/bulkreader.h"
#include "ftdi/usbport.h"

#include <ftdi.h>

#include <atomic>

namespace ftdi {

/// Gives a context back to libftdi1, closing what it has open.
struct FreeFtdiContext
{
    void operator()(ftdi_context *context) const { ftdi_free(context); }
};
using FtdiContext = std::unique_ptr<ftdi_context, FreeFtdiContext>;

/// A bridge that libftdi1 has opened. Its requests go through libftdi1; bulk data goes through libusb, since
/// libftdi1 reads with one transfer at a time and forgets how much of a write that timed out was sent.
class LibFtdiPort : public UsbPort
{
public:
    /// The longest that a request to the chip may take.
    static constexpr int requestTimeoutMs = 500;

    explicit LibFtdiPort(FtdiContext context);
    ~LibFtdiPort() override;

    /// What a program that was killed may have left behind: the mode of the lines, and halted endpoints.
    bool tidyUp();

    bool reset() override;
    bool setBitMode(std::uint8_t mask, std::uint8_t mode) override;
    bool setLatencyTimer(std::uint8_t milliseconds) override;
    bool setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff) override;
    bool purge(bool received, bool sent) override;
    void setTransferSizes(std::size_t in, std::size_t out) override;

    std::optional<std::span<const std::uint8_t>> read(std::chrono::milliseconds patience) override;
    bool isGone() override { return m_reader.isGone(); }
    [[nodiscard]] bool isPluggedIn() const override;
    [[nodiscard]] std::string ending() const override { return m_reader.ending(); }
    [[nodiscard]] std::uint32_t losses() const override { return m_reader.losses(); }
    void stopReading() override;
    std::optional<std::size_t> write(std::span<const std::uint8_t> bytes,
                                     std::chrono::milliseconds patience) override;

private:
    FtdiContext m_context;
    BulkReader m_reader;
    std::atomic<std::size_t> m_inSize;
    std::size_t m_outSize;
    std::atomic<bool> m_isGone{false}; ///< a write found nobody
};

} // namespace ftdi
