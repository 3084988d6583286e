#pragma once

#include "tests/ftdi/bridge/emulatedchip.h"
#include "tests/ftdi/bridge/readiness.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>

/// A bridge as the system's USB hands it to its clients: transfers that are submitted, completed, reaped and
/// discarded, endpoints that halt, an interface that one client holds. Results are numbers of errno, 0 is
/// good.
///
/// Thread-safe. No member waits: a thread of its own completes transfers when their time has come.
class EmulatedBridge
{
public:
    using Bytes = EmulatedChip::Bytes;
    using Client = const void *;

    static constexpr std::uint8_t inEndpoint = 0x81;
    static constexpr std::uint8_t outEndpoint = 0x02;
    static constexpr std::uint8_t controlEndpoint = 0x00;

    struct Urb
    {
        Client client = nullptr;
        std::uint64_t address = 0; ///< the client's own name for it
        std::uint8_t endpoint = 0;
        Bytes bytes;            ///< what goes out; a control request begins with its eight bytes
        std::size_t length = 0; ///< what may come in
        int status = 0;         ///< when completed: 0, or a negative number of errno
        std::size_t done = 0;
    };

    /// What goes wrong. Counts run down.
    struct Faults
    {
        bool isMute = false;              ///< control requests are never completed
        int failures = 0;                 ///< that many reading transfers fail
        int failure = 0;                  ///< so: EPIPE, EPROTO, EOVERFLOW
        std::size_t failAfter = 0;        ///< the first of them when that many bytes were sent
        std::size_t partial = 0;          ///< bytes that the failing one brings all the same
        int writeFailures = 0;            ///< that many writing transfers fail in the same way
        std::size_t writePartial = 0;     ///< bytes of each that arrive all the same
        bool holdsWrites = false;         ///< writing transfers are not completed
        bool staysHalted = false;         ///< clearing a halt does not help
        std::size_t mostReads = SIZE_MAX; ///< under way; more are refused: no memory
    };

    /// `node` is where its device node is made.
    EmulatedBridge(std::unique_ptr<Lines> lines, std::string node);
    EmulatedBridge(const EmulatedBridge &) = delete;
    EmulatedBridge &operator=(const EmulatedBridge &) = delete;
    ~EmulatedBridge();

    int claim(Client client);
    int release(Client client);
    int submit(Urb urb);
    /// EAGAIN when nothing is completed, ENODEV when that will not change any more.
    int reap(Client client, Urb &urb);
    int discard(Client client, std::uint64_t address);
    int clearHalt(std::uint8_t endpoint);
    /// The client is gone, and what it had under way.
    void forget(Client client);

    /// Everything under way ends. There is no way back: plugging in makes another one.
    void unplug();

    void setFaults(const Faults &faults);
    /// Runs `call(chip)` while nothing else does; what it changes is looked at.
    template <typename Call>
    auto onChip(Call call)
    {
        const std::lock_guard lock(m_mutex);
        m_wake.notify_all();
        return call(m_chip);
    }
    [[nodiscard]] std::size_t underWay() const;
    [[nodiscard]] std::size_t writesUnderWay() const;
    [[nodiscard]] int haltsCleared() const;
    [[nodiscard]] const std::string &node() const { return m_readiness.path(); }
    /// That open file of this process, the node, can be waited on for transfers to reap, and for the end.
    void letWaitOn(int file) const { m_readiness.standInFor(file); }

private:
    void run();
    bool completeReads();
    bool failRead(Urb &urb);
    void runControl(Urb &urb);
    void runWrite(Urb &urb);
    void complete(Urb urb);
    void endAll(Client client, int status);
    void showReadiness();

    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_wake;
    EmulatedChip m_chip;
    Faults m_faults;
    Readiness m_readiness;
    std::deque<Urb> m_underWay;
    std::map<Client, std::deque<Urb>> m_completed;
    Client m_holder = nullptr;
    std::size_t m_sent = 0;
    int m_haltsCleared = 0;
    bool m_isHalted = false; ///< the endpoint that is read
    bool m_isWriteHalted = false;
    bool m_isPlugged = true;
    bool m_hasEnded = false;
    simulator::SteadyClock m_clock;
    std::thread m_thread;
};
