#include "tests/simulator/bridge/statusofcalls.h"
#include "tests/simulator/bridge/virtualcable.h"

using namespace std::chrono_literals;
using simulator::Handle;
using simulator::Status;

TEST(BridgeCable, pulling_the_cable_makes_the_calls_fail_until_the_handle_is_closed)
{
    VirtualCable cable;
    cable.open();
    cable.change("Attached=false\n");
    for (const Status status : statusOfAllCalls(*cable.bridge, cable.handle))
        EXPECT_EQ(status, Status::IoError);
    cable.change("Attached=true\n");
    for (const Status status : statusOfAllCalls(*cable.bridge, cable.handle))
        EXPECT_EQ(status, Status::IoError) << "the old handle stays dead";
    EXPECT_EQ(cable.bridge->close(cable.handle), Status::Ok);
    EXPECT_EQ(cable.bridge->close(cable.handle), Status::InvalidHandle);
}

TEST(BridgeCable, a_detector_plugged_in_again_can_be_opened_before_the_lost_handle_is_closed)
{
    VirtualCable cable;
    cable.open();
    const Handle lost = cable.handle;
    cable.change("Attached=false\n");
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.change("Attached=true\n");
    cable.open();
    EXPECT_EQ(cable.bridge->close(lost), Status::Ok);
    EXPECT_EQ(cable.exchange(frame(2, 0xFA), 5).size(), 5) << "closing the old one leaves the new one open";
}

TEST(BridgeCable, a_serial_number_that_is_taken_away_is_unplugged)
{
    VirtualCable cable("SerialNumbers=A,B\n");
    cable.open("A");
    cable.change("SerialNumbers=B\n");
    quint32 n = 0;
    EXPECT_EQ(cable.bridge->getStatus(cable.handle, &n, &n, &n), Status::IoError);
    EXPECT_EQ(cable.serialNumbers(), QStringList{QStringLiteral("B")});
}

TEST(BridgeCable, the_settings_are_looked_at_every_200_ms_and_not_more_often)
{
    VirtualCable cable("BatteryLevel=50\n");
    cable.open();
    cable.folder.write(QStringLiteral("virtual-detector.ini"), "BatteryLevel=7\n");
    cable.clock.advance(100ms);
    EXPECT_EQ(cable.exchange(frame(2, 0x10), 6).left(1), hex("32"));
    cable.clock.advance(100ms);
    EXPECT_EQ(cable.exchange(frame(2, 0x10), 6).left(1), hex("07"));
}

TEST(BridgeCable, the_light_can_be_switched_off_while_it_streams)
{
    VirtualCable cable("Pacing=none\nScene=flat\n");
    cable.open();
    cable.start();
    EXPECT_GT(sampleAt(cable.receiveFrame(), 500000), 600000U);
    cable.change("Pacing=none\nScene=flat\nLight=0\n");
    EXPECT_LT(sampleAt(cable.receiveFrame(), 500000), 5000U);
    cable.change("Pacing=none\nScene=flat\nLight=1.0\n");
    EXPECT_GT(sampleAt(cable.receiveFrame(), 500000), 600000U);
}

TEST(BridgeCable, the_stream_comes_at_the_frame_rate_of_the_timing)
{
    VirtualCable cable;
    cable.open();
    cable.bridge->setTimeouts(cable.handle, 1000, 10);
    EXPECT_EQ(cable.exchange(frame(3, 0xCF), 6).size(), 6);
    cable.start();
    cable.receiveFrame();
    const auto before = cable.clock.now();
    for (int i = 0; i < 10; ++i)
        cable.receiveFrame();
    const double seconds = std::chrono::duration<double>(cable.clock.now() - before).count();
    EXPECT_NEAR(10 / seconds, 6.325, 0.01);
}
