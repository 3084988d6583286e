#include "tests/ftdi/bridge/bedtest.h"
#include "tests/ftdi/bridge/locked.h"

#include <QProcess>

using d2xx::Status;
using testing::HasSubstr;

using Refusals = BedTest;

TEST_F(Refusals, a_bridge_that_this_user_may_not_open_is_listed_and_the_rules_are_named)
{
    plugIn();
    {
        const Locked locked(bed.nodeOf(port));
        std::uint32_t count = 0;
        EXPECT_EQ(f.createDeviceInfoList(&count), Status::Ok);
        EXPECT_EQ(count, 1U);
        EXPECT_EQ(open(), Status::DeviceNotOpened);
        EXPECT_THAT(problem(), HasSubstr("may not access the bridge (/dev/bus/usb/001/002)"));
        EXPECT_THAT(problem(), HasSubstr("70-qv1k.rules"));
    }
    EXPECT_EQ(open(), Status::Ok);
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Refusals, of_a_bridge_that_another_program_holds_that_program_is_named)
{
    plugIn();
    QProcess holder;
    holder.start(QStringLiteral(QV1K_HOLDBRIDGE), {QStringLiteral("/dev/bus/usb/001/002")});
    ASSERT_TRUE(holder.waitForReadyRead(patienceMs)) << "it does not hold the bridge";
    EXPECT_EQ(open(), Status::DeviceNotOpened);
    EXPECT_THAT(problem(), HasSubstr("Another program holds the bridge (/dev/bus/usb/001/002): "
                                     "holdbridge (process " +
                                     std::to_string(holder.processId()) + ")."));
    QProcess other; // has it open without using it
    other.setStandardInputFile(QStringLiteral("/dev/bus/usb/001/002"));
    other.start(QStringLiteral("sleep"), {QStringLiteral("1000")});
    ASSERT_TRUE(other.waitForStarted(patienceMs));
    const auto named = [](const char *name, const QProcess &process) {
        return HasSubstr(name + (" (process " + std::to_string(process.processId()) + ')'));
    };
    EXPECT_EQ(open(), Status::DeviceNotOpened);
    EXPECT_THAT(problem(),
                testing::AllOf(named("holdbridge", holder), named("sleep", other), HasSubstr("), ")));
    other.kill();
    ASSERT_TRUE(other.waitForFinished(patienceMs));

    holder.closeWriteChannel();
    ASSERT_TRUE(holder.waitForFinished(patienceMs));
    ASSERT_TRUE(QTest::qWaitFor([this] { return open() == Status::Ok; }, patienceMs));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Refusals, a_serial_number_that_nobody_has_is_named)
{
    plugIn();
    EXPECT_EQ(open("QV9"), Status::DeviceNotFound);
    EXPECT_THAT(problem(), HasSubstr("No bridge with the serial number QV9"));
}

TEST_F(Refusals, a_chip_that_answers_nothing_is_given_up_in_time)
{
    plugIn();
    bridge->setFaults({.isMute = true});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(open(), Status::IoError);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4))
        << "2 s, and what a busy machine adds";
    EXPECT_THAT(problem(), HasSubstr("does not answer"));
    bridge->setFaults({});
    // The emulated system hears of a closed node a little later.
    EXPECT_TRUE(QTest::qWaitFor([this] { return open() == Status::Ok; }, patienceMs));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Refusals, one_that_is_open_here_is_told_from_one_that_is_held_elsewhere)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    EXPECT_EQ(open(), Status::DeviceNotOpened);
    EXPECT_THAT(problem(), HasSubstr("in this program"));
    EXPECT_EQ(f.close(handle), Status::Ok);
}

TEST_F(Refusals, an_unplugged_bridge_says_so)
{
    plugIn();
    ASSERT_EQ(open(), Status::Ok);
    EXPECT_EQ(problem(handle), "");
    unplug();
    std::uint32_t bytes = 0;
    ASSERT_TRUE(QTest::qWaitFor([&] { return queued(bytes) == Status::IoError; }, patienceMs));
    EXPECT_THAT(problem(handle), HasSubstr("unplugged"));
    EXPECT_EQ(f.close(handle), Status::Ok);
}
