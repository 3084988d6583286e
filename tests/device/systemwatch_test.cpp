#include "device/devicewatcher.h"
#include "tests/device/fakeudev.h"
#include "tests/support/faked2xx.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

/// What a watcher told, in order.
class SystemWatch : public testing::Test
{
protected:
    SystemWatch() { FakeUdev::reset(); }

    void watch(const std::shared_ptr<D2xx> &driver)
    {
        m_watcher = std::make_unique<DeviceWatcher>(driver);
        QObject::connect(m_watcher.get(), &DeviceWatcher::arrived, [this] { told += '+'; });
        QObject::connect(m_watcher.get(), &DeviceWatcher::removed, [this] { told += '-'; });
    }

    void end() { m_watcher.reset(); }

    const FakeD2xx fake;
    QByteArray told;

private:
    std::unique_ptr<DeviceWatcher> m_watcher;
};

} // namespace

TEST_F(SystemWatch, a_driver_that_reports_nothing_leaves_the_watching_to_the_system)
{
    watch(fake.driver());
    EXPECT_EQ(FakeUdev::watched(), QList<QByteArray>{"usb/usb_device"});
    FakeUdev::tell("add", "403/6014/900");
    ASSERT_TRUE(QTest::qWaitFor([this] { return told == "+"; }, 10000)) << told.constData();
    FakeUdev::tell("remove", "403/6014/900");
    ASSERT_TRUE(QTest::qWaitFor([this] { return told == "+-"; }, 10000)) << told.constData();
}

TEST_F(SystemWatch, other_devices_and_other_events_are_not_told)
{
    watch(fake.driver());
    FakeUdev::tellNothing();
    ASSERT_TRUE(QTest::qWaitFor([] { return FakeUdev::timesAsked() == 1; }, 10000));
    FakeUdev::tell("add", "1d6b/2/601");
    FakeUdev::tell("add", "4030/6014/900");
    FakeUdev::tell("add", {});
    FakeUdev::tell("bind", "403/6014/900");
    FakeUdev::tell("remove", "1d6b/2/601");
    FakeUdev::tell("remove", "403/6001/600"); // the last: what was told before it would stand before it
    ASSERT_TRUE(QTest::qWaitFor([this] { return !told.isEmpty(); }, 10000));
    EXPECT_EQ(told, "-");
}

TEST_F(SystemWatch, a_driver_that_reports_itself_is_not_watched_beside)
{
    d2xx::Functions functions = FakeD2xx::functions();
    functions.setDeviceEventCallback = [](d2xx::DeviceEventCallback, void *) {
    };
    watch(std::make_shared<D2xx>(functions));
    EXPECT_EQ(FakeUdev::watched(), QList<QByteArray>());
}

TEST_F(SystemWatch, what_the_system_handed_out_is_given_back)
{
    watch(fake.driver());
    FakeUdev::tell("add", "403/6014/900");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !told.isEmpty(); }, 10000));
    EXPECT_GT(FakeUdev::handedOut(), 0);
    end();
    EXPECT_EQ(FakeUdev::handedOut(), 0);
}

TEST_F(SystemWatch, a_system_that_cannot_be_watched_is_left_alone)
{
    using enum FakeUdev::Call;
    for (const FakeUdev::Call call : {New, Monitor, Filter, Receiving}) {
        FakeUdev::reset();
        FakeUdev::fail(call);
        watch(fake.driver());
        FakeUdev::tell("add", "403/6014/900");
        QCoreApplication::processEvents();
        EXPECT_EQ(told, "");
        EXPECT_EQ(FakeUdev::watched(), QList<QByteArray>());
        end();
        EXPECT_EQ(FakeUdev::handedOut(), 0);
    }
}
