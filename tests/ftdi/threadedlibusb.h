#pragma once

#include <libusb.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <set>
#include <thread>

/// The few libusb calls that bulk reading needs, with a bridge behind them that streams: transfers end on a
/// thread of their own, oldest first, as they do when another thread handles the events. All members may be
/// called from any thread; one object at a time.
class ThreadedLibusb
{
public:
    static constexpr std::size_t packetSize = 512;

    ThreadedLibusb();
    ~ThreadedLibusb();
    ThreadedLibusb(const ThreadedLibusb &) = delete;
    ThreadedLibusb &operator=(const ThreadedLibusb &) = delete;

    /// That many more transfers bring full packets, whose payload counts upwards byte by byte from 0.
    void stream(int transfers);
    /// Everything under way ends, and nothing can be begun any more.
    void unplug();
    /// Whether cancelled transfers are given back.
    void keepCancelled(bool keeps);
    /// How many transfers there are.
    [[nodiscard]] int allocated() const;

    // What the calls do.
    libusb_transfer *allocate();
    void free(libusb_transfer *transfer);
    int submit(libusb_transfer *transfer);
    void cancel(libusb_transfer *transfer);
    /// Returns when the transfer of that flag has ended, or the wait is over.
    void handleEvents(const timeval &wait, const int *completed);

private:
    void run(const std::stop_token &stop);
    [[nodiscard]] libusb_transfer *next();
    void end(libusb_transfer *transfer);
    void fill(libusb_transfer *transfer);

    /// Held during the callbacks too, as libusb holds its lock of events; those may free.
    mutable std::recursive_mutex m_mutex; // guards what follows
    std::condition_variable_any m_changed;
    std::deque<libusb_transfer *> m_underWay;
    std::set<libusb_transfer *> m_cancelled;
    int m_streamed = 0; ///< transfers that are still to bring something
    bool m_isUnplugged = false;
    bool m_keepsCancelled = false;
    int m_allocated = 0;
    std::uint8_t m_nextByte = 0;
    std::jthread m_system;
};
