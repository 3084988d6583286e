#pragma once

#include "d2xx/calls.h"
#include "simulator/clock.h"

#include <functional>
#include <thread>
#include <vector>

namespace simulator {

/// Reports plugging and unplugging to one callback, from a thread that lives as long as the callback is set.
/// Thread-safe.
class DeviceEvents
{
public:
    using Callback = d2xx::DeviceEventCallback;

    static constexpr Milliseconds pollInterval{200};

    /// `poll` is called from the thread every `pollInterval`; it may post().
    explicit DeviceEvents(std::function<void()> poll) : m_poll(std::move(poll)) {}
    ~DeviceEvents();
    Q_DISABLE_COPY_MOVE(DeviceEvents)

    /// Replaces the callback; null for none. Once it returned the old callback is not called any more: it
    /// waits for a call that is under way, unless it is called from within that very call.
    void setCallback(Callback callback, void *context);

    /// Has the callback told, in the order of the posts. Without one nothing happens. Does not block.
    void post(bool arrived);

private:
    void stop();
    void run();

    std::function<void()> m_poll;
    std::mutex m_registration; // one replacement at a time
    std::thread m_thread;

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_wake;
    Callback m_callback = nullptr;
    void *m_context = nullptr;
    std::vector<bool> m_events;
    bool m_ended = false;
};

} // namespace simulator
