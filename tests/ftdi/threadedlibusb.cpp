#include "tests/ftdi/threadedlibusb.h"

#include <algorithm>

namespace {

ThreadedLibusb *current = nullptr;

} // namespace

ThreadedLibusb::ThreadedLibusb()
{
    current = this;
    m_system = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

ThreadedLibusb::~ThreadedLibusb()
{
    m_system = {};
    current = nullptr;
}

void ThreadedLibusb::stream(int transfers)
{
    const std::lock_guard lock(m_mutex);
    m_streamed = transfers;
    m_changed.notify_all();
}

void ThreadedLibusb::unplug()
{
    const std::lock_guard lock(m_mutex);
    m_isUnplugged = true;
    m_changed.notify_all();
}

void ThreadedLibusb::keepCancelled(bool keeps)
{
    const std::lock_guard lock(m_mutex);
    m_keepsCancelled = keeps;
    m_changed.notify_all();
}

int ThreadedLibusb::allocated() const
{
    const std::lock_guard lock(m_mutex);
    return m_allocated;
}

libusb_transfer *ThreadedLibusb::allocate()
{
    const std::lock_guard lock(m_mutex);
    ++m_allocated;
    return new libusb_transfer{};
}

void ThreadedLibusb::free(libusb_transfer *transfer)
{
    const std::lock_guard lock(m_mutex);
    --m_allocated;
    delete transfer;
}

int ThreadedLibusb::submit(libusb_transfer *transfer)
{
    const std::lock_guard lock(m_mutex);
    if (m_isUnplugged)
        return LIBUSB_ERROR_NO_DEVICE;
    m_underWay.push_back(transfer);
    m_changed.notify_all();
    return LIBUSB_SUCCESS;
}

void ThreadedLibusb::cancel(libusb_transfer *transfer)
{
    const std::lock_guard lock(m_mutex);
    if (std::find(m_underWay.begin(), m_underWay.end(), transfer) == m_underWay.end())
        return;
    m_cancelled.insert(transfer);
    m_changed.notify_all();
}

void ThreadedLibusb::handleEvents(const timeval &wait, const int *completed)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::seconds(wait.tv_sec) + std::chrono::microseconds(wait.tv_usec),
                       [=] { return *completed != 0; });
}

void ThreadedLibusb::run(const std::stop_token &stop)
{
    std::unique_lock lock(m_mutex);
    while (m_changed.wait(lock, stop, [this] { return next() != nullptr; }))
        end(next());
}

/// The transfer that ends now; null when none does.
libusb_transfer *ThreadedLibusb::next()
{
    if (m_underWay.empty())
        return nullptr;
    const auto isCancelled = [this](libusb_transfer *transfer) {
        return m_cancelled.contains(transfer);
    };
    if (!m_cancelled.empty() && !m_keepsCancelled)
        return *std::find_if(m_underWay.begin(), m_underWay.end(), isCancelled);
    const auto first = std::find_if_not(m_underWay.begin(), m_underWay.end(), isCancelled);
    return first != m_underWay.end() && (m_streamed > 0 || m_isUnplugged) ? *first : nullptr;
}

void ThreadedLibusb::end(libusb_transfer *transfer)
{
    std::erase(m_underWay, transfer);
    transfer->actual_length = 0;
    if (m_cancelled.erase(transfer) > 0)
        transfer->status = LIBUSB_TRANSFER_CANCELLED;
    else if (m_isUnplugged)
        transfer->status = LIBUSB_TRANSFER_NO_DEVICE;
    else
        fill(transfer);
    transfer->callback(transfer);
    m_changed.notify_all();
}

void ThreadedLibusb::fill(libusb_transfer *transfer)
{
    --m_streamed;
    transfer->status = LIBUSB_TRANSFER_COMPLETED;
    transfer->actual_length = transfer->length;
    for (int i = 0; i < transfer->length; ++i) {
        const bool isStatus = static_cast<std::size_t>(i) % packetSize < 2;
        transfer->buffer[i] = isStatus ? std::uint8_t{0x60} : m_nextByte++;
    }
}

extern "C" {

libusb_transfer *LIBUSB_CALL libusb_alloc_transfer(int /*isoPackets*/)
{
    return current->allocate();
}

void LIBUSB_CALL libusb_free_transfer(libusb_transfer *transfer)
{
    current->free(transfer);
}

int LIBUSB_CALL libusb_submit_transfer(libusb_transfer *transfer)
{
    return current->submit(transfer);
}

int LIBUSB_CALL libusb_cancel_transfer(libusb_transfer *transfer)
{
    current->cancel(transfer);
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_clear_halt(libusb_device_handle * /*device*/, unsigned char /*endpoint*/)
{
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_handle_events_timeout_completed(libusb_context * /*context*/, timeval *wait,
                                                       int *completed)
{
    current->handleEvents(*wait, completed);
    return LIBUSB_SUCCESS;
}
}
