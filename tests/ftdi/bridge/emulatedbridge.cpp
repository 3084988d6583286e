#include "tests/ftdi/bridge/emulatedbridge.h"

#include <algorithm>
#include <cerrno>
#include <utility>

EmulatedBridge::EmulatedBridge(std::unique_ptr<Lines> lines, std::string node)
    : m_chip(std::move(lines)), m_readiness(std::move(node)), m_thread([this] { run(); })
{
}

EmulatedBridge::~EmulatedBridge()
{
    {
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
        m_wake.notify_all();
    }
    m_thread.join();
}

void EmulatedBridge::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_hasEnded) {
        const bool isAwaited = completeReads();
        const auto now = m_clock.now();
        const auto longest = now + std::chrono::seconds(1);
        m_clock.wait(lock, m_wake, isAwaited ? std::min(m_chip.nextFill(now), longest) : longest);
    }
}

int EmulatedBridge::claim(Client client)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isPlugged)
        return ENODEV;
    if (m_holder != nullptr && m_holder != client)
        return EBUSY;
    m_holder = client;
    return 0;
}

int EmulatedBridge::release(Client client)
{
    const std::lock_guard lock(m_mutex);
    if (m_holder != client)
        return EINVAL;
    m_holder = nullptr;
    endAll(client, -ENOENT);
    return m_isPlugged ? 0 : ENODEV;
}

int EmulatedBridge::submit(Urb urb)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isPlugged)
        return ENODEV;
    if (urb.endpoint == inEndpoint && m_underWay.size() >= m_faults.mostReads)
        return ENOMEM;
    if (urb.endpoint == controlEndpoint && !m_faults.isMute) {
        runControl(urb);
        complete(std::move(urb));
    } else if (urb.endpoint == outEndpoint && !m_faults.holdsWrites) {
        runWrite(urb);
        complete(std::move(urb));
    } else {
        m_underWay.push_back(std::move(urb));
    }
    m_wake.notify_all();
    showReadiness();
    return 0;
}

void EmulatedBridge::runControl(Urb &urb)
{
    EmulatedChip::Setup setup{};
    std::copy_n(urb.bytes.begin(), std::min(urb.bytes.size(), setup.size()), setup.begin());
    const bool isStandard = (setup[0] & 0x60U) == 0; // for the device's descriptors, which the system has
    if (isStandard || !m_chip.control(setup, m_clock.now()))
        urb.status = -EPIPE;
}

void EmulatedBridge::runWrite(Urb &urb)
{
    urb.done = urb.bytes.size();
    if (m_faults.writeFailures > 0) {
        --m_faults.writeFailures;
        urb.status = -m_faults.failure;
        urb.done = std::min(m_faults.writePartial, urb.done);
        m_isWriteHalted = m_faults.failure == EPIPE;
    } else if (m_isWriteHalted) {
        urb.status = -EPIPE;
        urb.done = 0;
    }
    m_chip.lines().write(std::span(urb.bytes).first(urb.done), m_clock.now());
}

int EmulatedBridge::reap(Client client, Urb &urb)
{
    const std::lock_guard lock(m_mutex);
    std::deque<Urb> &completed = m_completed[client];
    if (completed.empty())
        return m_isPlugged ? EAGAIN : ENODEV;
    urb = std::move(completed.front());
    completed.pop_front();
    showReadiness();
    return 0;
}

int EmulatedBridge::discard(Client client, std::uint64_t address)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_underWay.begin(), m_underWay.end(), [=](const Urb &urb) {
        return urb.client == client && urb.address == address;
    });
    if (found == m_underWay.end())
        return EINVAL;
    Urb urb = std::move(*found);
    m_underWay.erase(found);
    urb.status = -ENOENT;
    complete(std::move(urb));
    showReadiness();
    return 0;
}

int EmulatedBridge::clearHalt(std::uint8_t endpoint)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isPlugged)
        return ENODEV;
    if (endpoint == inEndpoint) {
        ++m_haltsCleared;
        m_isHalted = false;
        m_wake.notify_all();
    } else {
        m_isWriteHalted = false;
    }
    return 0;
}

void EmulatedBridge::forget(Client client)
{
    const std::lock_guard lock(m_mutex);
    if (m_holder == client)
        m_holder = nullptr;
    std::erase_if(m_underWay, [=](const Urb &urb) { return urb.client == client; });
    m_completed.erase(client);
    showReadiness();
}

void EmulatedBridge::unplug()
{
    const std::lock_guard lock(m_mutex);
    m_isPlugged = false;
    m_chip.lines().lost();
    endAll(nullptr, -ESHUTDOWN);
    m_readiness.hangUp();
    m_readiness.remove();
}

void EmulatedBridge::setFaults(const Faults &faults)
{
    const std::lock_guard lock(m_mutex);
    m_faults = faults;
    m_sent = 0;
    m_isHalted = false;
    m_wake.notify_all();
}

std::size_t EmulatedBridge::underWay() const
{
    const std::lock_guard lock(m_mutex);
    return m_underWay.size();
}

std::size_t EmulatedBridge::writesUnderWay() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(std::count_if(
        m_underWay.begin(), m_underWay.end(), [](const Urb &urb) { return urb.endpoint == outEndpoint; }));
}

int EmulatedBridge::haltsCleared() const
{
    const std::lock_guard lock(m_mutex);
    return m_haltsCleared;
}

/// True when a transfer waits for the chip.
bool EmulatedBridge::completeReads()
{
    bool isAwaited = false;
    auto at = m_underWay.begin();
    while (at != m_underWay.end() && m_isPlugged && !m_isHalted) {
        if (at->endpoint != inEndpoint) {
            ++at;
            continue;
        }
        if (!failRead(*at)) {
            at->bytes = m_chip.fill(at->length, m_clock.now());
            isAwaited = at->bytes.empty();
        }
        if (isAwaited)
            break;
        at->done = at->bytes.size();
        m_sent += at->done;
        Urb urb = std::move(*at);
        at = m_underWay.erase(at);
        complete(std::move(urb));
    }
    showReadiness();
    return isAwaited;
}

/// What a failing transfer brought until then counts; a stall halts the endpoint.
bool EmulatedBridge::failRead(Urb &urb)
{
    if (m_faults.failures == 0 || m_sent < m_faults.failAfter)
        return false;
    if (!m_faults.staysHalted)
        --m_faults.failures;
    m_isHalted = m_faults.failure == EPIPE;
    urb.status = -m_faults.failure;
    urb.bytes.clear();
    if (m_faults.partial > 0)
        urb.bytes = m_chip.fill(std::min(urb.length, m_faults.partial), m_clock.now());
    return true;
}

void EmulatedBridge::complete(Urb urb)
{
    m_completed[urb.client].push_back(std::move(urb));
}

void EmulatedBridge::endAll(Client client, int status)
{
    std::deque<Urb> ending;
    std::swap(ending, m_underWay);
    for (Urb &urb : ending) {
        if (client != nullptr && urb.client != client) {
            m_underWay.push_back(std::move(urb));
            continue;
        }
        urb.status = status;
        complete(std::move(urb));
    }
    showReadiness();
}

void EmulatedBridge::showReadiness()
{
    m_readiness.set(std::any_of(m_completed.begin(), m_completed.end(),
                                [](const auto &entry) { return !entry.second.empty(); }));
}
