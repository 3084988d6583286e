#include "simulator/bridge/deviceevents.h"

namespace simulator {

namespace {

/// Whose callback the current thread is in, if any.
thread_local const DeviceEvents *reporting = nullptr;

} // namespace

DeviceEvents::~DeviceEvents()
{
    stop();
}

void DeviceEvents::setCallback(Callback callback, void *context)
{
    if (reporting == this) { // waiting for the own thread would never end
        const std::lock_guard lock(m_mutex);
        m_callback = m_ended ? nullptr : callback;
        m_context = context;
        return;
    }
    const std::lock_guard registration(m_registration);
    stop();
    if (callback == nullptr)
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_callback = callback;
        m_context = context;
        m_ended = false;
    }
    m_thread = std::thread(&DeviceEvents::run, this);
}

void DeviceEvents::post(bool arrived)
{
    const std::lock_guard lock(m_mutex);
    if (m_callback == nullptr)
        return;
    m_events.push_back(arrived);
    m_wake.notify_all();
}

void DeviceEvents::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        m_callback = nullptr;
        m_events.clear();
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void DeviceEvents::run()
{
    reporting = this;
    std::unique_lock lock(m_mutex);
    while (!m_ended) {
        m_wake.wait_for(lock, pollInterval, [this] { return m_ended || !m_events.empty(); });
        if (m_ended)
            return;
        const bool isQuiet = m_events.empty();
        const bool arrived = !isQuiet && m_events.front();
        const Callback callback = m_callback;
        void *context = m_context;
        if (!isQuiet)
            m_events.erase(m_events.begin());
        lock.unlock();
        if (isQuiet)
            m_poll();
        else if (callback != nullptr)
            callback(context, arrived ? 1 : 0);
        lock.lock();
    }
}

} // namespace simulator
