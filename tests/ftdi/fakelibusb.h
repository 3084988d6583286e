#pragma once

#include <libusb.h>

#include <cstdint>
#include <deque>
#include <vector>

/// The few libusb calls that bulk reading needs, driven by the test. What is put in here ends the transfers
/// that are under way, oldest first, one for each time that events are handled. For one thread.
struct FakeLibusb
{
    struct Ending
    {
        libusb_transfer_status status;
        std::vector<std::uint8_t> bytes;
    };

    static FakeLibusb &instance();

    void deliver(std::vector<std::uint8_t> bytes)
    {
        endings.push_back({LIBUSB_TRANSFER_COMPLETED, std::move(bytes)});
    }

    std::deque<Ending> endings;
    std::deque<libusb_transfer *> underWay;
    std::vector<libusb_transfer *> cancelled;
    std::vector<int> lengths; ///< of all transfers that were begun
    int submitsLeft = 1'000'000;
    int submitResult = LIBUSB_ERROR_NO_DEVICE; ///< when none are left
    std::size_t mostUnderWay = SIZE_MAX;       ///< more are refused: no memory
    int haltsCleared = 0;
    int clearResult = LIBUSB_SUCCESS;
    int allocated = 0;
    std::vector<std::uint8_t> cancelledBringsNext; ///< what the next cancelled one had got by then
    bool keepsCancelled = false;                   ///< does not give them back
    int handlingResult = LIBUSB_SUCCESS;
    int timesHandled = 0;
    bool hasMemory = true; ///< for transfers
};
