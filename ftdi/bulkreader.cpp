#include "ftdi/bulkreader.h"

#include "d2xx/arguments.h"

#include <libusb.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace ftdi {

namespace {

using std::chrono::milliseconds;

constexpr std::size_t statusSize = 2;
constexpr milliseconds drainPatience{1000};

} // namespace

std::span<std::uint8_t> withoutStatusBytes(std::span<std::uint8_t> transfer, std::size_t packetSize)
{
    std::size_t kept = 0;
    for (std::size_t packet = 0; packet < transfer.size(); packet += packetSize) {
        const auto bytes = transfer.subspan(packet, std::min(packetSize, transfer.size() - packet));
        if (bytes.size() <= statusSize)
            continue;
        std::copy(bytes.begin() + statusSize, bytes.end(),
                  transfer.begin() + static_cast<std::ptrdiff_t>(kept));
        kept += bytes.size() - statusSize;
    }
    return transfer.first(kept);
}

struct BulkReader::Transfer
{
    enum class State { Ended, UnderWay, Abandoned };

    Transfer() : usb(libusb_alloc_transfer(0)), buffer(d2xx::largestTransfer) {}
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;
    ~Transfer() { libusb_free_transfer(usb); }

    [[nodiscard]] bool hasEnded() const { return state == State::Ended; }

    libusb_transfer *const usb;
    std::vector<std::uint8_t> buffer;
    std::atomic<State> state = State::Ended;
    int completed = 0; ///< for libusb, which looks at it while it waits
};

/// Called by libusb on whichever thread handles its events.
void BulkReader::noteEnd(libusb_transfer *usb)
{
    auto *transfer = static_cast<Transfer *>(usb->user_data);
    transfer->completed = 1;
    if (transfer->state.exchange(Transfer::State::Ended) == Transfer::State::Abandoned)
        delete transfer;
}

BulkReader::BulkReader(const Source &source) : m_source(source), m_transferSize(source.packetSize)
{
    for (auto &transfer : m_transfers)
        transfer = std::make_unique<Transfer>();
}

BulkReader::~BulkReader()
{
    stop();
}

void BulkReader::setTransferSize(std::size_t size)
{
    m_transferSize = std::max(m_source.packetSize, size - size % m_source.packetSize);
}

bool BulkReader::submit(Transfer &transfer)
{
    if (transfer.usb == nullptr)
        return false;
    libusb_fill_bulk_transfer(transfer.usb, m_source.device, m_source.endpoint, transfer.buffer.data(),
                              static_cast<int>(m_transferSize), &BulkReader::noteEnd, &transfer, 0);
    transfer.completed = 0;
    transfer.state = Transfer::State::UnderWay;
    if (libusb_submit_transfer(transfer.usb) == LIBUSB_SUCCESS)
        return true;
    transfer.state = Transfer::State::Ended;
    return false;
}

bool BulkReader::start()
{
    m_oldest = 0;
    m_isReading = true;
    return std::all_of(m_transfers.begin(), m_transfers.end(), [this](auto &t) { return submit(*t); });
}

bool BulkReader::handleEvents(milliseconds patience, int *completed)
{
    timeval wait{patience.count() / 1000, patience.count() % 1000 * 1000};
    const int result = libusb_handle_events_timeout_completed(m_source.context, &wait, completed);
    return result == LIBUSB_SUCCESS || result == LIBUSB_ERROR_INTERRUPTED;
}

std::optional<std::span<const std::uint8_t>> BulkReader::read(milliseconds patience)
{
    using Bytes = std::span<const std::uint8_t>;
    if (!m_isReading && !start())
        return {};
    if (m_handedOut != nullptr && !submit(*std::exchange(m_handedOut, nullptr)))
        return {};

    Transfer &oldest = *m_transfers[m_oldest];
    if (!oldest.hasEnded() && !handleEvents(patience, &oldest.completed))
        return {};
    if (!oldest.hasEnded())
        return Bytes();
    if (oldest.usb->status != LIBUSB_TRANSFER_COMPLETED)
        return {};
    m_handedOut = &oldest;
    m_oldest = (m_oldest + 1) % transferCount;
    return withoutStatusBytes({oldest.buffer.data(), static_cast<std::size_t>(oldest.usb->actual_length)},
                              m_source.packetSize);
}

void BulkReader::stop()
{
    m_handedOut = nullptr;
    m_isReading = false;
    for (auto &transfer : m_transfers) {
        if (!transfer->hasEnded())
            libusb_cancel_transfer(transfer->usb);
    }
    const auto deadline = std::chrono::steady_clock::now() + drainPatience;
    for (auto &transfer : m_transfers) {
        while (!transfer->hasEnded() && std::chrono::steady_clock::now() < deadline) {
            if (!handleEvents(milliseconds(20), &transfer->completed))
                break;
        }
        // The system may still write to a transfer that it does not give back: the last callback frees it.
        if (transfer->state.exchange(Transfer::State::Abandoned) == Transfer::State::UnderWay) {
            static_cast<void>(transfer.release());
            transfer = std::make_unique<Transfer>();
        } else {
            transfer->state = Transfer::State::Ended;
        }
    }
}

} // namespace ftdi
