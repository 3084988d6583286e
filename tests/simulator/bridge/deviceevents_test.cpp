#include "tests/simulator/bridge/virtualcable.h"

#include <QTest>

#include <mutex>

namespace {

/// Collects what the callback is told.
class Events
{
public:
    static void take(void *context, int arrived)
    {
        auto *self = static_cast<Events *>(context);
        const std::lock_guard lock(self->m_mutex);
        self->m_text += arrived == 1 ? '+' : '-';
    }

    std::string text()
    {
        const std::lock_guard lock(m_mutex);
        return m_text;
    }

    /// Waits until that is what was told.
    bool become(const std::string &expected)
    {
        return QTest::qWaitFor([&] { return text() == expected; }, 10000);
    }

private:
    std::mutex m_mutex;
    std::string m_text;
};

} // namespace

TEST(DeviceEventReports, tell_when_the_cable_is_pulled_and_plugged_in)
{
    VirtualCable cable;
    Events events;
    cable.bridge->setDeviceEventCallback(&Events::take, &events);
    cable.change("Attached=false\n");
    EXPECT_TRUE(events.become("-"));
    cable.change("Attached=true\n");
    EXPECT_TRUE(events.become("-+"));
}

TEST(DeviceEventReports, come_without_any_call_on_the_bridge)
{
    VirtualCable cable;
    Events events;
    cable.bridge->setDeviceEventCallback(&Events::take, &events);
    cable.folder.write(QStringLiteral("virtual-detector.ini"), "Attached=false\n"); // the clock stands still
    EXPECT_TRUE(events.become("-"));
}

TEST(DeviceEventReports, tell_of_each_serial_number_first_those_that_went)
{
    VirtualCable cable("SerialNumbers=A,B\n");
    Events events;
    cable.bridge->setDeviceEventCallback(&Events::take, &events);
    cable.change("SerialNumbers=B,C,D\n");
    EXPECT_TRUE(events.become("-++"));
}

TEST(DeviceEventReports, tell_of_a_cable_pulled_in_the_middle_of_a_frame)
{
    VirtualCable cable("Pacing=none\n[Faults]\nUnplugAtByte=1000\n");
    Events events;
    cable.bridge->setDeviceEventCallback(&Events::take, &events);
    cable.open();
    cable.start();
    EXPECT_EQ(cable.exchange(frame(0, 0), simulator::blockBytes).size(), 1000);
    EXPECT_TRUE(events.become("-"));
}

TEST(DeviceEventReports, do_not_tell_what_happened_before)
{
    VirtualCable cable;
    cable.change("Attached=false\n");
    Events events;
    cable.bridge->setDeviceEventCallback(&Events::take, &events);
    cable.change("Attached=true\n");
    EXPECT_TRUE(events.become("+"));
}

TEST(DeviceEventReports, do_not_tell_of_a_change_that_plugs_nothing)
{
    VirtualCable cable;
    Events events;
    cable.bridge->setDeviceEventCallback(&Events::take, &events);
    cable.change("Light=0\n");
    EXPECT_FALSE(cable.serialNumbers().isEmpty());
    cable.change("Attached=false\n");
    EXPECT_TRUE(events.become("-"));
}

TEST(DeviceEventReports, end_with_a_null_callback)
{
    VirtualCable cable;
    Events first;
    Events second;
    cable.bridge->setDeviceEventCallback(&Events::take, &first);
    cable.bridge->setDeviceEventCallback(nullptr, nullptr);
    cable.change("Attached=false\n");
    EXPECT_TRUE(cable.serialNumbers().isEmpty());
    cable.bridge->setDeviceEventCallback(&Events::take, &second);
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
        auto events = std::make_unique<Events>();
        cable.bridge->setDeviceEventCallback(&Events::take, events.get());
        cable.change(i % 2 == 0 ? "Attached=false\n" : "Attached=true\n");
        EXPECT_EQ(cable.serialNumbers().isEmpty(), i % 2 == 0);
        cable.bridge->setDeviceEventCallback(nullptr, nullptr);
        events.reset(); // a late call would write here
    }
}

TEST(DeviceEventReports, end_when_the_library_goes)
{
    Events events;
    {
        VirtualCable cable;
        cable.bridge->setDeviceEventCallback(&Events::take, &events);
    }
    EXPECT_EQ(events.text(), "");
}
