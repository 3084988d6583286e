#include "ftdi/libftdiport.h"

#include "ftdi/devicelist.h"

#include <libusb.h>

#include <algorithm>

namespace ftdi {

namespace {

// What D2XX begins with.
constexpr std::size_t usualTransferSize = 4096;

/// What a bridge uses whose descriptor tells no packet size.
std::size_t usualPacketSize(libusb_device *device)
{
    return libusb_get_device_speed(device) == LIBUSB_SPEED_FULL ? 64 : 512;
}

/// libftdi1 names the endpoints from the chip's side: what the chip sends out is read here.
BulkReader::Source readingSide(const ftdi_context &context)
{
    const std::size_t told = context.max_packet_size;
    return {context.usb_ctx, context.usb_dev, static_cast<std::uint8_t>(context.out_ep),
            told != 0 ? told : usualPacketSize(libusb_get_device(context.usb_dev))};
}

} // namespace

LibFtdiPort::LibFtdiPort(FtdiContext context)
    : m_context(std::move(context)), m_reader(readingSide(*m_context)), m_inSize(usualTransferSize),
      m_outSize(usualTransferSize)
{
}

LibFtdiPort::~LibFtdiPort()
{
    if (m_reader.stop()) // or the chip would not take it
        LibFtdiPort::setBitMode(0, BITMODE_RESET);
    ftdi_usb_close(m_context.get()); // gives the bridge back to the system's driver; freeing does not
}

bool LibFtdiPort::tidyUp()
{
    if (!setBitMode(0, BITMODE_RESET))
        return false;
    for (const int endpoint : {m_context->in_ep, m_context->out_ep})
        static_cast<void>(libusb_clear_halt(m_context->usb_dev, static_cast<std::uint8_t>(endpoint)));
    return true;
}

bool LibFtdiPort::reset()
{
    return ftdi_usb_reset(m_context.get()) == 0;
}

bool LibFtdiPort::setBitMode(std::uint8_t mask, std::uint8_t mode)
{
    return ftdi_set_bitmode(m_context.get(), mask, mode) == 0;
}

bool LibFtdiPort::setLatencyTimer(std::uint8_t milliseconds)
{
    return ftdi_set_latency_timer(m_context.get(), milliseconds) == 0;
}

bool LibFtdiPort::setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    if (flow == SIO_XON_XOFF_HS)
        return ftdi_setflowctrl_xonxoff(m_context.get(), xOn, xOff) == 0;
    return ftdi_setflowctrl(m_context.get(), flow) == 0;
}

bool LibFtdiPort::purge(bool received, bool sent)
{
    return (!received || ftdi_tciflush(m_context.get()) == 0) &&
           (!sent || ftdi_tcoflush(m_context.get()) == 0);
}

void LibFtdiPort::setTransferSizes(std::size_t in, std::size_t out)
{
    m_inSize = in;
    m_outSize = out;
}

std::optional<std::span<const std::uint8_t>> LibFtdiPort::read(std::chrono::milliseconds patience)
{
    m_reader.setTransferSize(m_inSize);
    return m_reader.read(patience);
}

bool LibFtdiPort::isPluggedIn() const
{
    if (m_isGone)
        return false;
    const DeviceList list(m_context->usb_ctx);
    const auto devices = list.devices();
    return !list.isValid() ||
           std::find(devices.begin(), devices.end(), libusb_get_device(m_context->usb_dev)) != devices.end();
}

void LibFtdiPort::stopReading()
{
    m_reader.stop();
}

std::optional<std::size_t> LibFtdiPort::write(std::span<const std::uint8_t> bytes,
                                              std::chrono::milliseconds patience)
{
    const auto endpoint = static_cast<std::uint8_t>(m_context->in_ep);
    for (int tries = 0; tries < BulkReader::mostTries; ++tries) {
        int sent = 0;
        const int result =
            libusb_bulk_transfer(m_context->usb_dev, endpoint,
                                 const_cast<std::uint8_t *>(bytes.data()), // only read by an outward transfer
                                 static_cast<int>(std::min(bytes.size(), m_outSize)), &sent,
                                 static_cast<unsigned int>(patience.count()));
        if (result == LIBUSB_SUCCESS || result == LIBUSB_ERROR_TIMEOUT)
            return static_cast<std::size_t>(sent);
        const bool mayBeMended = result == LIBUSB_ERROR_PIPE || result == LIBUSB_ERROR_IO;
        const int mending = mayBeMended ? libusb_clear_halt(m_context->usb_dev, endpoint) : result;
        if (mending == LIBUSB_ERROR_NO_DEVICE)
            m_isGone = true;
        if (mending != LIBUSB_SUCCESS)
            return {};
        if (sent > 0)
            return static_cast<std::size_t>(sent);
    }
    return {};
}

} // namespace ftdi
