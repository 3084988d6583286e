#include "process/terminationsignals.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <csignal>

#include <sys/resource.h>

namespace {

class Termination : public testing::TestWithParam<int>
{
};

} // namespace

TEST_P(Termination, a_request_to_end_is_told_and_the_process_goes_on)
{
    const TerminationSignals termination;
    QSignalSpy requested(&termination, &TerminationSignals::requested);
    EXPECT_EQ(TerminationSignals::received(), 0);
    std::raise(GetParam());
    EXPECT_EQ(TerminationSignals::received(), GetParam()) << "also while no events are handled";
    EXPECT_TRUE(requested.wait(10000));
}

TEST_P(Termination, the_process_then_ends_by_that_very_signal)
{
    EXPECT_EXIT(
        {
            const TerminationSignals termination;
            std::raise(GetParam());
            TerminationSignals::endBySignal();
        },
        testing::KilledBySignal(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(of, Termination, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(TerminationOnce, the_first_of_several_requests_counts)
{
    const TerminationSignals termination;
    std::raise(SIGTERM);
    std::raise(SIGINT);
    EXPECT_EQ(TerminationSignals::received(), SIGTERM);
}

TEST(TerminationOnce, what_was_ignored_before_stays_ignored)
{
    auto *before = std::signal(SIGHUP, SIG_IGN);
    {
        const TerminationSignals termination;
        std::raise(SIGHUP);
        EXPECT_EQ(TerminationSignals::received(), 0);
    }
    std::signal(SIGHUP, before);
}

TEST(TerminationOnce, without_a_request_nothing_ends)
{
    const TerminationSignals termination;
    TerminationSignals::endBySignal();
    EXPECT_EQ(TerminationSignals::received(), 0);
}

TEST(TerminationOnce, where_requests_cannot_be_told_a_signal_ends_the_process_at_once)
{
    const auto raiseWithoutFiles = [] {
        rlimit files{};
        getrlimit(RLIMIT_NOFILE, &files);
        files.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &files);
        const TerminationSignals termination;
        std::raise(SIGTERM);
    };
    EXPECT_EXIT(raiseWithoutFiles(), testing::KilledBySignal(SIGTERM), "");
}

TEST(TerminationOnce, afterwards_a_signal_ends_the_process_again)
{
    EXPECT_EXIT(
        {
            {
                const TerminationSignals termination;
            }
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}
