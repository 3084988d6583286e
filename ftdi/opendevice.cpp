#include "ftdi/opendevice.h"

#include "d2xx/arguments.h"
#include "ftdi/endings.h"

#include <algorithm>

namespace ftdi {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How soon a wait at the bridge notices that it is to end.
constexpr milliseconds patience{20};

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
    std::unique_ptr<UsbPort> ending;
    {
        const std::lock_guard endingLock(m_endingMutex);
        std::swap(ending, m_port);
    }
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
    while (!stop.stop_requested() && !m_queue.hasEnded()) {
        const auto bytes = m_port->read(patience);
        m_losses = m_port->losses();
        if (!bytes) {
            noteEnding(m_port->isPluggedIn() ? m_port->ending() : unplugged);
            m_queue.end(Status::IoError);
            return;
        }
        append(*bytes, stop);
    }
}

/// While there is no room the bridge is watched all the same: that it was unplugged is told at once, and what
/// it brought before can still be read. No transfer tells when all of them had ended well before.
void OpenDevice::append(std::span<const std::uint8_t> bytes, const std::stop_token &stop)
{
    bytes = m_queue.append(bytes, patience, stop);
    while (!bytes.empty() && !stop.stop_requested() && !m_queue.hasEnded()) {
        if (m_queue.status() == Status::Ok && (m_port->isGone() || !m_port->isPluggedIn())) {
            noteEnding(unplugged);
            m_queue.announceEnd(Status::IoError);
        }
        bytes = m_queue.append(bytes, patience, stop);
    }
}

void OpenDevice::noteEnding(const std::string &why)
{
    const std::lock_guard lock(m_endingMutex);
    if (m_ending.empty())
        m_ending = why;
}

std::string OpenDevice::ending()
{
    const std::lock_guard lock(m_endingMutex);
    if (m_port && !m_port->isPluggedIn())
        m_ending = unplugged;
    return m_ending;
}

Status OpenDevice::losses(std::uint32_t *count) const
{
    if (count == nullptr)
        return Status::InvalidParameter;
    *count = m_losses;
    return m_queue.status();
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
    if (!d2xx::isBitMode(mode))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) { return port.setBitMode(mask, mode); });
}

Status OpenDevice::setLatencyTimer(std::uint8_t milliseconds)
{
    if (!d2xx::isLatency(milliseconds))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) { return port.setLatencyTimer(milliseconds); });
}

Status OpenDevice::setTransferSizes(std::uint32_t in, std::uint32_t out)
{
    if (!d2xx::isTransferSize(in) || !d2xx::isTransferSize(out))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) {
        port.setTransferSizes(in, out);
        return true;
    });
}

Status OpenDevice::setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    if (!d2xx::isFlowControl(flow))
        return Status::InvalidParameter;
    return onPort([=](UsbPort &port) { return port.setFlowControl(flow, xOn, xOff); });
}

Status OpenDevice::purge(std::uint32_t mask)
{
    if (!d2xx::isPurgeMask(mask))
        return Status::InvalidParameter;
    const bool received = (mask & d2xx::purgeReceived) != 0;
    const bool sent = (mask & d2xx::purgeSent) != 0;
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
    std::size_t waiting = 0;
    const Status status = m_queue.waiting(waiting);
    *rxBytes = static_cast<std::uint32_t>(waiting);
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
            if (!sent) {
                noteEnding(port.isPluggedIn() ? takesNothing : unplugged);
                m_queue.end(Status::IoError);
                return false;
            }
            left = left.subspan(*sent);
            *bytesWritten += static_cast<std::uint32_t>(*sent);
            if (steady_clock::now() >= deadline || m_queue.status() != Status::Ok)
                break;
        }
        return true;
    });
}

} // namespace ftdi
