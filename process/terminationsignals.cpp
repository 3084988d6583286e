#include "process/terminationsignals.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <fcntl.h>
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
BOOL WINAPI onConsoleEvent(DWORD event)
{
    note(SIGINT);
    if (TerminationSignals *told = listener)
        QMetaObject::invokeMethod(told, &TerminationSignals::requested, Qt::QueuedConnection);
    // After these the system ends the process as soon as this returns; it gives it some seconds if it does
    // not.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        Sleep(INFINITE);
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
    const int before = errno;
    note(signal);
    const char byte = 0;
    // A pipe that is full wakes the event loop up anyway.
    [[maybe_unused]] const auto written = write(wakeUp[1], &byte, 1);
    errno = before;
}

} // namespace

struct TerminationSignals::Handlers
{
    static constexpr std::array<int, 3> numbers{SIGINT, SIGTERM, SIGHUP};

    explicit Handlers(TerminationSignals *owner)
    {
        if (pipe2(wakeUp.data(), O_CLOEXEC | O_NONBLOCK) != 0)
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
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            sigaction(numbers[i], nullptr, &before[i]);
            // Ignored by whoever started the process (nohup, a script's background job): then it stays so.
            if (before[i].sa_handler != SIG_IGN)
                sigaction(numbers[i], &action, nullptr);
        }
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
#ifdef Q_OS_WIN
    ExitProcess(STATUS_CONTROL_C_EXIT); // the C library would end with a status that says nothing
#else
    std::signal(signal, SIG_DFL);
    std::raise(signal);
#endif
}
