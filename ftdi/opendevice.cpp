#include "ftdi/opendevice.h"

#include <algorithm>
#include <array>

namespace d2xx {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How soon a wait at the bridge notices that it is to end.
constexpr milliseconds patience{20};

constexpr std::uint32_t purgeReceived = 1;
constexpr std::uint32_t purgeSent = 2;

template <typename Value, std::size_t count>
bool isOneOf(Value value, const std::array<Value, count> &known)
{
    return std::find(known.begin(), known.end(), value) != known.end();
}

steady_clock::time_point deadlineAfter(std::uint32_t timeoutMs)
{
    return timeoutMs == 0 ? steady_clock::time_point::max() : steady_clock::now() + milliseconds(timeoutMs);
}

/// What is left until the deadline, but at least one millisecond and no more than the patience.
milliseconds nextWait(steady_clock::time_point deadline)
{
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    return std::clamp(left, milliseconds(1), patience);
}

} // namespace

OpenDevice::OpenDevice(std::unique_ptr<UsbPort> port, std::size_t queueSize)
    : m_port(std::move(port)), m_queue(queueSize)
{
    startReader();
}

OpenDevice::~OpenDevice()
{
    close();
}

void OpenDevice::close()
{
    m_queue.end(Status::InvalidHandle);
    const std::lock_guard lock(m_portMutex);
    if (!m_port)
        return;
    stopReader();
    m_port.reset();
}

void OpenDevice::startReader()
{
    m_reader = std::jthread([this](const std::stop_token &stop) { readOn(stop); });
}

void OpenDevice::stopReader()
{
    m_reader = {};
    m_port->stopReading();
}

void OpenDevice::readOn(const std::stop_token &stop)
{
    while (!stop.stop_requested()) {
        const auto bytes = m_port->read(patience);
        if (!bytes) {
            m_queue.end(Status::IoError);
            return;
        }
        m_queue.append(*bytes, stop);
    }
}

template <typename Call>
Status OpenDevice::onPort(Call call)
{
    const std::lock_guard lock(m_portMutex);
    if (const Status status = m_queue.status(); status != Status::Ok)
        return status;
    return call(*m_port) ? m_queue.status() : Status::IoError;
}

/// Nothing that was received before outlives the call: neither in the queue nor in transfers under way.
template <typename Call>
Status OpenDevice::withoutReader(Call call)
{
    return onPort([&](UsbPort &port) {
        stopReader();
        const bool isDone = call(port);
        m_queue.clear();
        startReader();
        return isDone;
    });
}

Status OpenDevice::reset()
{
    return withoutReader([](UsbPort &port) { return port.reset(); });
}

Status OpenDevice::setBitMode(std::uint8_t mask, std::uint8_t mode)
{
    constexpr std::array<std::uint8_t, 8> modes{0x00, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40};
    if (!isOneOf(mode, modes))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) { return port.setBitMode(mask, mode); });
}

Status OpenDevice::setLatencyTimer(std::uint8_t milliseconds)
{
    constexpr std::uint8_t shortest = 2;
    if (milliseconds < shortest)
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) { return port.setLatencyTimer(milliseconds); });
}

Status OpenDevice::setTransferSizes(std::uint32_t in, std::uint32_t out)
{
    const auto isKnown = [](std::uint32_t size) {
        return size >= 64 && size <= 65536 && size % 64 == 0;
    };
    if (!isKnown(in) || !isKnown(out))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) {
        port.setTransferSizes(in, out);
        return true;
    });
}

Status OpenDevice::setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    constexpr std::array<std::uint16_t, 4> flows{0x0000, 0x0100, 0x0200, 0x0400};
    if (!isOneOf(flow, flows))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) { return port.setFlowControl(flow, xOn, xOff); });
}

Status OpenDevice::purge(std::uint32_t mask)
{
    if (mask == 0 || mask > (purgeReceived | purgeSent))
        return Status::InvalidParameter;
    const bool received = (mask & purgeReceived) != 0;
    const bool sent = (mask & purgeSent) != 0;
    const auto purgeChip = [=](UsbPort &port) {
        return port.purge(received, sent);
    };
    return received ? withoutReader(purgeChip) : onPort(purgeChip);
}

Status OpenDevice::setTimeouts(std::uint32_t readMs, std::uint32_t writeMs)
{
    m_readTimeout = readMs;
    m_writeTimeout = writeMs;
    return m_queue.status();
}

Status OpenDevice::queued(std::uint32_t *rxBytes, std::uint32_t *txBytes, std::uint32_t *events) const
{
    if (rxBytes == nullptr || txBytes == nullptr || events == nullptr)
        return Status::InvalidParameter;
    const Status status = m_queue.status();
    *rxBytes = status == Status::Ok ? static_cast<std::uint32_t>(m_queue.size()) : 0;
    *txBytes = 0;
    *events = 0;
    return status;
}

Status OpenDevice::read(void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    if (buffer == nullptr || bytesRead == nullptr)
        return Status::InvalidParameter;
    std::size_t taken = 0;
    const Status status =
        m_queue.take({static_cast<std::uint8_t *>(buffer), length}, deadlineAfter(m_readTimeout), taken);
    *bytesRead = static_cast<std::uint32_t>(taken);
    return status;
}

Status OpenDevice::write(const void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    if (buffer == nullptr || bytesWritten == nullptr)
        return Status::InvalidParameter;
    *bytesWritten = 0;
    return onPort([=, this](UsbPort &port) {
        const auto deadline = deadlineAfter(m_writeTimeout);
        std::span left(static_cast<const std::uint8_t *>(buffer), length);
        while (!left.empty()) {
            const auto sent = port.write(left, nextWait(deadline));
            if (!sent)
                return false;
            left = left.subspan(*sent);
            *bytesWritten += static_cast<std::uint32_t>(*sent);
            if (steady_clock::now() >= deadline || m_queue.status() != Status::Ok)
                break;
        }
        return true;
    });
}

} // namespace d2xx
