#include "device/devicewatcher.h"
#include "tests/support/faked2xx.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <thread>

namespace {

void (*callback)(void *, int) = nullptr;
void *callbackContext = nullptr;

void setCallback(void (*newCallback)(void *, int), void *context)
{
    callback = newCallback;
    callbackContext = context;
}

std::shared_ptr<D2xx> reportingDriver()
{
    d2xx::Functions functions = FakeD2xx::functions();
    functions.setDeviceEventCallback = &setCallback;
    return std::make_shared<D2xx>(functions);
}

} // namespace

TEST(DeviceWatcher, reports_of_the_driver_library_arrive_on_the_watchers_thread)
{
    DeviceWatcher watcher(reportingDriver());
    ASSERT_NE(callback, nullptr);
    QSignalSpy arrived(&watcher, &DeviceWatcher::arrived);
    QSignalSpy removed(&watcher, &DeviceWatcher::removed);
    QThread *thread = nullptr;
    QObject::connect(&watcher, &DeviceWatcher::arrived, &watcher, [&] { thread = QThread::currentThread(); });

    std::thread([] {
        callback(callbackContext, 1);
        callback(callbackContext, 0);
    }).join();
    EXPECT_EQ(arrived.size(), 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return removed.size() == 1; }));
    EXPECT_EQ(arrived.size(), 1);
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST(DeviceWatcher, takes_its_callback_back_when_it_goes)
{
    {
        const DeviceWatcher watcher(reportingDriver());
        ASSERT_NE(callback, nullptr);
    }
    EXPECT_EQ(callback, nullptr);
    EXPECT_EQ(callbackContext, nullptr);
}
