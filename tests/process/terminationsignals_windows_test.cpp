#include "process/terminationsignals.h"

#include "tests/support/console_windows.h"

#include <QSignalSpy>

#include <csignal>
#include <thread>

namespace {

class Termination : public testing::TestWithParam<DWORD>
{
protected:
    OwnConsole console;
};

/// The event comes on a thread of the system's.
void waitUntilReceived()
{
    while (TerminationSignals::received() == 0)
        std::this_thread::yield();
}

bool endedByConsole(int status)
{
    return static_cast<quint32>(status) == exitByConsole;
}

std::string nameOf(const testing::TestParamInfo<DWORD> &event)
{
    return event.param == CTRL_C_EVENT ? "CtrlC" : "CtrlBreak";
}

} // namespace

TEST_P(Termination, a_request_to_end_is_told_and_the_process_goes_on)
{
    const TerminationSignals termination;
    QSignalSpy requested(&termination, &TerminationSignals::requested);
    EXPECT_EQ(TerminationSignals::received(), 0);
    OwnConsole::raise(GetParam());
    EXPECT_TRUE(requested.wait(10000));
    EXPECT_EQ(TerminationSignals::received(), SIGINT);
}

TEST_P(Termination, is_known_also_while_no_events_are_handled)
{
    const TerminationSignals termination;
    OwnConsole::raise(GetParam());
    waitUntilReceived();
    EXPECT_EQ(TerminationSignals::received(), SIGINT);
}

TEST_P(Termination, the_process_then_ends_as_by_the_consoles_event)
{
    const DWORD event = GetParam();
    EXPECT_EXIT(
        {
            const OwnConsole ofTheChild;
            const TerminationSignals termination;
            OwnConsole::raise(event);
            waitUntilReceived();
            TerminationSignals::endBySignal();
        },
        endedByConsole, "");
}

INSTANTIATE_TEST_SUITE_P(of, Termination, testing::Values(CTRL_C_EVENT, CTRL_BREAK_EVENT), nameOf);

TEST(TerminationOnce, without_a_request_nothing_ends)
{
    const TerminationSignals termination;
    TerminationSignals::endBySignal();
    EXPECT_EQ(TerminationSignals::received(), 0);
}
