#include "tests/ftdi/fakelibusb.h"

#include <algorithm>
#include <utility>

FakeLibusb &FakeLibusb::instance()
{
    static FakeLibusb usb;
    return usb;
}

namespace {

void end(libusb_transfer *transfer, const FakeLibusb::Ending &ending)
{
    std::copy(ending.bytes.begin(), ending.bytes.end(), transfer->buffer);
    transfer->actual_length = static_cast<int>(ending.bytes.size());
    transfer->status = ending.status;
    transfer->callback(transfer);
}

} // namespace

extern "C" {

libusb_transfer *LIBUSB_CALL libusb_alloc_transfer(int /*isoPackets*/)
{
    if (!FakeLibusb::instance().hasMemory)
        return nullptr;
    ++FakeLibusb::instance().allocated;
    return new libusb_transfer{};
}

void LIBUSB_CALL libusb_free_transfer(libusb_transfer *transfer)
{
    if (transfer == nullptr)
        return;
    --FakeLibusb::instance().allocated;
    delete transfer;
}

int LIBUSB_CALL libusb_submit_transfer(libusb_transfer *transfer)
{
    FakeLibusb &usb = FakeLibusb::instance();
    if (usb.underWay.size() >= usb.mostUnderWay)
        return LIBUSB_ERROR_NO_MEM;
    if (usb.submitsLeft-- <= 0)
        return usb.submitResult;
    usb.underWay.push_back(transfer);
    usb.lengths.push_back(transfer->length);
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_cancel_transfer(libusb_transfer *transfer)
{
    FakeLibusb::instance().cancelled.push_back(transfer);
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_clear_halt(libusb_device_handle * /*device*/, unsigned char /*endpoint*/)
{
    ++FakeLibusb::instance().haltsCleared;
    return FakeLibusb::instance().clearResult;
}

int LIBUSB_CALL libusb_handle_events_timeout_completed(libusb_context * /*context*/, timeval * /*wait*/,
                                                       int * /*completed*/)
{
    FakeLibusb &usb = FakeLibusb::instance();
    ++usb.timesHandled;
    if (usb.handlingResult != LIBUSB_SUCCESS)
        return usb.handlingResult;
    if (!usb.cancelled.empty() && !usb.keepsCancelled) {
        libusb_transfer *transfer = usb.cancelled.front();
        usb.cancelled.erase(usb.cancelled.begin());
        std::erase(usb.underWay, transfer);
        end(transfer, {LIBUSB_TRANSFER_CANCELLED, std::exchange(usb.cancelledBringsNext, {})});
    } else if (!usb.endings.empty() && !usb.underWay.empty()) {
        const auto ending = usb.endings.front();
        usb.endings.pop_front();
        libusb_transfer *transfer = usb.underWay.front();
        usb.underWay.pop_front();
        end(transfer, ending);
    }
    return LIBUSB_SUCCESS;
}
}
