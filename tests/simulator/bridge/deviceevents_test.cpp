#include "tests/simulator/bridge/toldevents.h"
#include "tests/simulator/bridge/virtualcable.h"

TEST(DeviceEventReports, tell_when_the_cable_is_pulled_and_plugged_in)
{
    VirtualCable cable;
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.change("Attached=false\n");
    EXPECT_TRUE(events.become("-"));
    cable.change("Attached=true\n");
    EXPECT_TRUE(events.become("-+"));
}

TEST(DeviceEventReports, come_without_any_call_on_the_bridge)
{
    VirtualCable cable;
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.folder.write(QStringLiteral("virtual-detector.ini"), "Attached=false\n"); // the clock stands still
    EXPECT_TRUE(events.become("-"));
}

TEST(DeviceEventReports, tell_of_each_serial_number_first_those_that_went)
{
    VirtualCable cable("SerialNumbers=A,B\n");
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.change("SerialNumbers=B,C,D\n");
    EXPECT_TRUE(events.become("-++"));
}

TEST(DeviceEventReports, tell_of_a_cable_pulled_in_the_middle_of_a_frame)
{
    VirtualCable cable("Pacing=none\n[Faults]\nUnplugAtByte=1000\n");
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.open();
    cable.start();
    EXPECT_EQ(cable.exchange(frame(0, 0), simulator::blockBytes).size(), 1000);
    EXPECT_TRUE(events.become("-"));
}

TEST(DeviceEventReports, do_not_tell_what_happened_before)
{
    VirtualCable cable;
    cable.change("Attached=false\n");
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.change("Attached=true\n");
    EXPECT_TRUE(events.become("+"));
}

TEST(DeviceEventReports, do_not_tell_of_a_change_that_plugs_nothing)
{
    VirtualCable cable;
    ToldEvents events;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    cable.change("Light=0\n");
    EXPECT_FALSE(cable.serialNumbers().isEmpty());
    cable.change("Attached=false\n");
    EXPECT_TRUE(events.become("-"));
}

TEST(DeviceEventReports, end_with_a_null_callback)
{
    VirtualCable cable;
    ToldEvents first;
    ToldEvents second;
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &first);
    cable.bridge->setDeviceEventCallback(nullptr, nullptr);
    cable.change("Attached=false\n");
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.bridge->setDeviceEventCallback(&ToldEvents::take, &second);
    cable.change("Attached=true\n");
    EXPECT_TRUE(second.become("+"));
    EXPECT_EQ(first.text(), "");
}

TEST(DeviceEventReports, can_be_ended_twice_and_without_a_beginning)
{
    VirtualCable cable;
    cable.bridge->setDeviceEventCallback(nullptr, nullptr);
    cable.bridge->setDeviceEventCallback(nullptr, nullptr);
    EXPECT_FALSE(cable.serialNumbers().isEmpty());
}

TEST(DeviceEventReports, can_be_ended_from_within_the_callback)
{
    VirtualCable cable;
    struct Context
    {
        simulator::Bridge *bridge;
        std::atomic<int> calls;
    } context{cable.bridge.get(), 0};
    const auto endItself = [](void *pointer, int) {
        auto *self = static_cast<Context *>(pointer);
        self->bridge->setDeviceEventCallback(nullptr, nullptr);
        ++self->calls;
    };
    cable.bridge->setDeviceEventCallback(endItself, &context);
    cable.change("SerialNumbers=A,B\n"); // one goes, two come
    EXPECT_TRUE(QTest::qWaitFor([&] { return context.calls == 1; }, 10000));
    cable.bridge.reset();
    EXPECT_EQ(context.calls, 1);
}

TEST(DeviceEventReports, do_not_come_after_the_registration_was_ended_in_the_middle_of_events)
{
    VirtualCable cable;
    for (int i = 0; i < 50; ++i) {
        auto events = std::make_unique<ToldEvents>();
        cable.bridge->setDeviceEventCallback(&ToldEvents::take, events.get());
        cable.change(i % 2 == 0 ? "Attached=false\n" : "Attached=true\n");
        EXPECT_EQ(cable.serialNumbers().isEmpty(), i % 2 == 0);
        cable.bridge->setDeviceEventCallback(nullptr, nullptr);
        events.reset(); // a late call would write here
    }
}

TEST(DeviceEventReports, end_when_the_library_goes)
{
    ToldEvents events;
    {
        VirtualCable cable;
        cable.bridge->setDeviceEventCallback(&ToldEvents::take, &events);
    }
    EXPECT_EQ(events.text(), "");
}
