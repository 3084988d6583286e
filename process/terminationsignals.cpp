#include "process/terminationsignals.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <csignal>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <unistd.h>
#endif

namespace {

std::atomic<int> firstSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "it is written by a signal handler");

void note(int signal)
{
    int none = 0;
    firstSignal.compare_exchange_strong(none, signal);
}

} // namespace

#ifdef Q_OS_WIN

namespace {

std::atomic<TerminationSignals *> listener{nullptr};

/// Called by the system on a thread of its own.
BOOL WINAPI onConsoleEvent(DWORD)
{
    note(SIGINT);
    if (TerminationSignals *told = listener)
        QMetaObject::invokeMethod(told, &TerminationSignals::requested, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

struct TerminationSignals::Handlers
{
    explicit Handlers(TerminationSignals *owner)
    {
        listener = owner;
        SetConsoleCtrlHandler(&onConsoleEvent, TRUE);
    }
    ~Handlers()
    {
        SetConsoleCtrlHandler(&onConsoleEvent, FALSE);
        listener = nullptr;
    }
    Q_DISABLE_COPY_MOVE(Handlers)
};

#else

namespace {

/// A signal handler may write, and little else: the event loop waits at the other end.
std::array<int, 2> wakeUp{-1, -1};

void onSignal(int signal)
{
    note(signal);
    const char byte = 0;
    if (write(wakeUp[1], &byte, 1) < 0)
        return; // full: the event loop wakes up anyway
}

} // namespace

struct TerminationSignals::Handlers
{
    static constexpr std::array<int, 3> numbers{SIGINT, SIGTERM, SIGHUP};

    explicit Handlers(TerminationSignals *owner)
    {
        if (pipe(wakeUp.data()) != 0)
            return; // they end the process at once, as without this
        notifier = std::make_unique<QSocketNotifier>(wakeUp[0], QSocketNotifier::Read);
        connect(notifier.get(), &QSocketNotifier::activated, owner, [owner] {
            char byte = 0;
            if (read(wakeUp[0], &byte, 1) == 1)
                Q_EMIT owner->requested();
        });
        struct sigaction action
        {
        };
        action.sa_handler = &onSignal;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        for (std::size_t i = 0; i < numbers.size(); ++i)
            sigaction(numbers[i], &action, &before[i]);
    }
    ~Handlers()
    {
        if (!notifier)
            return;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            sigaction(numbers[i], &before[i], nullptr);
        notifier.reset();
        for (int &end : wakeUp)
            close(std::exchange(end, -1));
    }
    Q_DISABLE_COPY_MOVE(Handlers)

    std::unique_ptr<QSocketNotifier> notifier;
    std::array<struct sigaction, numbers.size()> before{};
};

#endif

TerminationSignals::TerminationSignals()
{
    firstSignal = 0;
    m_handlers = std::make_unique<Handlers>(this);
}

TerminationSignals::~TerminationSignals() = default;

int TerminationSignals::received()
{
    return firstSignal;
}

void TerminationSignals::endBySignal()
{
    const int signal = firstSignal;
    if (signal == 0)
        return;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}
