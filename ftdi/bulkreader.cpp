#include "ftdi/bulkreader.h"

#include "d2xx/arguments.h"
#include "ftdi/endings.h"
#include "ftdi/statusbytes.h"

#include <libusb.h>

#include <algorithm>
#include <utility>

namespace ftdi {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds drainPatience{1000};

std::string wordsFor(int failure)
{
    switch (failure) {
    case LIBUSB_TRANSFER_NO_DEVICE:
        return unplugged;
    case LIBUSB_TRANSFER_STALL:
        return "The bridge refuses to send: its endpoint stays halted, however often that is cleared.";
    case LIBUSB_TRANSFER_OVERFLOW:
        return "The bridge sends more than it is asked for, again and again.";
    default:
        return "Transfers from the bridge fail again and again. Try another cable or another USB port.";
    }
}

} // namespace

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
    for (auto &transfer : m_transfers) {
        transfer = std::make_unique<Transfer>();
        m_idle.push_back(transfer.get());
    }
}

BulkReader::~BulkReader()
{
    stop();
}

void BulkReader::setTransferSize(std::size_t size)
{
    m_transferSize = std::max(m_source.packetSize, size - size % m_source.packetSize);
}

int BulkReader::submit(Transfer &transfer)
{
    if (transfer.usb == nullptr)
        return LIBUSB_ERROR_NO_MEM;
    libusb_fill_bulk_transfer(transfer.usb, m_source.device, m_source.endpoint, transfer.buffer.data(),
                              static_cast<int>(m_transferSize), &BulkReader::noteEnd, &transfer, 0);
    transfer.completed = 0;
    transfer.state = Transfer::State::UnderWay;
    const int result = libusb_submit_transfer(transfer.usb);
    if (result != LIBUSB_SUCCESS)
        transfer.state = Transfer::State::Ended;
    return result;
}

/// With no memory for all it goes on with those that there are, and does not ask again at every read.
void BulkReader::submitAll()
{
    while (!m_idle.empty() && m_underWay.size() < m_most) {
        const int result = submit(*m_idle.back());
        if (result == LIBUSB_ERROR_NO_MEM) {
            m_most = std::max<std::size_t>(m_underWay.size(), 1);
            return;
        }
        if (result != LIBUSB_SUCCESS)
            return beginDraining(result == LIBUSB_ERROR_NO_DEVICE ? LIBUSB_TRANSFER_NO_DEVICE
                                                                  : LIBUSB_TRANSFER_ERROR);
        m_underWay.push_back(m_idle.back());
        m_idle.pop_back();
    }
}

bool BulkReader::handleEvents(milliseconds patience, int *completed)
{
    timeval wait{patience.count() / 1000, patience.count() % 1000 * 1000};
    const int result = libusb_handle_events_timeout_completed(m_source.context, &wait, completed);
    return result == LIBUSB_SUCCESS || result == LIBUSB_ERROR_INTERRUPTED;
}

std::optional<BulkReader::Bytes> BulkReader::read(milliseconds patience)
{
    if (m_handedOut != nullptr)
        m_idle.push_back(std::exchange(m_handedOut, nullptr));
    if (m_phase == Phase::Over)
        return {};
    if (m_phase == Phase::Idle)
        m_phase = Phase::Reading;
    if (m_phase == Phase::Reading)
        submitAll();
    if (m_underWay.empty())
        return withNoneUnderWay(patience);

    Transfer &oldest = *m_underWay.front();
    if (!oldest.hasEnded() && !handleEvents(patience, &oldest.completed))
        return endBy(LIBUSB_TRANSFER_ERROR);
    if (oldest.hasEnded())
        return takeOldest();
    if (m_phase == Phase::Draining && steady_clock::now() >= m_drainDeadline)
        abandonAll();
    return Bytes();
}

/// What a transfer brought counts, however it ended.
BulkReader::Bytes BulkReader::takeOldest()
{
    Transfer &oldest = *m_underWay.front();
    m_underWay.pop_front();
    m_handedOut = &oldest;
    const auto status = oldest.usb->status;
    if (status == LIBUSB_TRANSFER_COMPLETED)
        m_tries = m_phase == Phase::Reading ? 0 : m_tries;
    else if (m_phase == Phase::Reading)
        beginDraining(status);
    else if (status == LIBUSB_TRANSFER_NO_DEVICE)
        m_failure = status;
    const std::span bytes(oldest.buffer.data(), static_cast<std::size_t>(oldest.usb->actual_length));
    m_losses += lossesIn(bytes, m_source.packetSize);
    return withoutStatusBytes(bytes, m_source.packetSize);
}

void BulkReader::beginDraining(int failure)
{
    m_phase = Phase::Draining;
    m_failure = failure;
    m_drainDeadline = steady_clock::now() + drainPatience;
    cancelAll();
}

void BulkReader::cancelAll()
{
    for (Transfer *transfer : m_underWay) {
        if (!transfer->hasEnded())
            libusb_cancel_transfer(transfer->usb);
    }
}

std::optional<BulkReader::Bytes> BulkReader::withNoneUnderWay(milliseconds patience)
{
    const bool isTooEarly = m_tries > 0 && steady_clock::now() < m_lastTry + betweenTries;
    if (m_phase == Phase::Reading || isTooEarly) { // there is no memory for now, or the next try is not due
        int never = 0;
        return handleEvents(patience, &never) ? std::optional(Bytes()) : endBy(LIBUSB_TRANSFER_ERROR);
    }
    if (!mend())
        return endBy(m_failure);
    m_phase = Phase::Reading;
    return Bytes();
}

bool BulkReader::mend()
{
    if (m_failure == LIBUSB_TRANSFER_NO_DEVICE || m_tries >= mostTries)
        return false;
    ++m_tries;
    m_lastTry = steady_clock::now();
    const int result = libusb_clear_halt(m_source.device, m_source.endpoint);
    if (result == LIBUSB_ERROR_NO_DEVICE)
        m_failure = LIBUSB_TRANSFER_NO_DEVICE;
    return result == LIBUSB_SUCCESS;
}

std::optional<BulkReader::Bytes> BulkReader::endBy(int failure)
{
    m_phase = Phase::Over;
    m_ending = wordsFor(failure);
    return {};
}

bool BulkReader::isGone()
{
    int never = 0;
    static_cast<void>(handleEvents(milliseconds(0), &never));
    return std::any_of(m_underWay.begin(), m_underWay.end(), [](const Transfer *transfer) {
        return transfer->hasEnded() && transfer->usb->status == LIBUSB_TRANSFER_NO_DEVICE;
    });
}

/// The system may still write to a transfer that it does not give back: the last callback frees it. True when
/// there was none of these.
bool BulkReader::abandonAll()
{
    bool haveAllEnded = true;
    for (Transfer *transfer : std::exchange(m_underWay, {})) {
        if (transfer->state.exchange(Transfer::State::Abandoned) == Transfer::State::UnderWay) {
            haveAllEnded = false;
            auto &owner = *std::find_if(m_transfers.begin(), m_transfers.end(),
                                        [=](const auto &owned) { return owned.get() == transfer; });
            static_cast<void>(owner.release());
            owner = std::make_unique<Transfer>();
            m_idle.push_back(owner.get());
        } else {
            transfer->state = Transfer::State::Ended;
            m_idle.push_back(transfer);
        }
    }
    return haveAllEnded;
}

bool BulkReader::stop()
{
    if (m_handedOut != nullptr)
        m_idle.push_back(std::exchange(m_handedOut, nullptr));
    cancelAll();
    const auto deadline = steady_clock::now() + drainPatience;
    for (Transfer *transfer : m_underWay) {
        while (!transfer->hasEnded() && steady_clock::now() < deadline) {
            if (!handleEvents(milliseconds(20), &transfer->completed))
                break;
        }
    }
    m_phase = Phase::Idle;
    m_most = transferCount;
    m_tries = 0;
    return abandonAll();
}

} // namespace ftdi
