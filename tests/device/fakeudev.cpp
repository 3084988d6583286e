#include "tests/device/fakeudev.h"

#include <libudev.h>

#include <array>

#include <unistd.h>

struct udev_device
{
    QByteArray action;
    QByteArray product;
};

namespace {

struct State
{
    std::array<int, 2> pipe{-1, -1};
    QList<udev_device> events;
    QByteArray filter;
    QList<QByteArray> watched;
    int handedOut = 0;
    int timesAsked = 0;
    FakeUdev::Call failing = FakeUdev::Call::None;
};

State &state()
{
    static State instance;
    return instance;
}

/// What is handed out need not be anything.
template <typename Handle>
Handle *handOut(FakeUdev::Call call)
{
    static char thing;
    if (state().failing == call)
        return nullptr;
    ++state().handedOut;
    return reinterpret_cast<Handle *>(&thing);
}

template <typename Handle>
Handle *takeBack()
{
    --state().handedOut;
    return nullptr;
}

} // namespace

void FakeUdev::reset()
{
    for (const int end : state().pipe) {
        if (end >= 0)
            close(end);
    }
    state() = {};
    if (pipe(state().pipe.data()) != 0)
        qFatal("there is no pipe");
}

void FakeUdev::tell(const char *action, const QByteArray &product)
{
    state().events.append({action, product});
    tellNothing();
}

void FakeUdev::tellNothing()
{
    if (write(state().pipe[1], "!", 1) != 1)
        qFatal("the pipe is full");
}

void FakeUdev::fail(Call call)
{
    state().failing = call;
}

QList<QByteArray> FakeUdev::watched()
{
    return state().watched;
}

int FakeUdev::timesAsked()
{
    return state().timesAsked;
}

int FakeUdev::handedOut()
{
    return state().handedOut;
}

udev *udev_new()
{
    return handOut<udev>(FakeUdev::Call::New);
}

udev *udev_unref(udev *)
{
    return takeBack<udev>();
}

udev_monitor *udev_monitor_new_from_netlink(udev *, const char *)
{
    return handOut<udev_monitor>(FakeUdev::Call::Monitor);
}

udev_monitor *udev_monitor_unref(udev_monitor *)
{
    return takeBack<udev_monitor>();
}

int udev_monitor_filter_add_match_subsystem_devtype(udev_monitor *, const char *subsystem, const char *type)
{
    state().filter = QByteArray(subsystem) + '/' + type;
    return state().failing == FakeUdev::Call::Filter ? -1 : 0;
}

int udev_monitor_enable_receiving(udev_monitor *)
{
    if (state().failing == FakeUdev::Call::Receiving)
        return -1;
    state().watched.append(state().filter);
    return 0;
}

int udev_monitor_get_fd(udev_monitor *)
{
    return state().pipe[0];
}

udev_device *udev_monitor_receive_device(udev_monitor *)
{
    char byte = 0;
    ++state().timesAsked;
    if (read(state().pipe[0], &byte, 1) != 1 || state().events.isEmpty())
        return nullptr;
    ++state().handedOut;
    return new udev_device(state().events.takeFirst());
}

udev_device *udev_device_unref(udev_device *device)
{
    delete device;
    return takeBack<udev_device>();
}

const char *udev_device_get_property_value(udev_device *device, const char *key)
{
    return qstrcmp(key, "PRODUCT") == 0 && !device->product.isEmpty() ? device->product.constData() : nullptr;
}

const char *udev_device_get_action(udev_device *device)
{
    return device->action.constData();
}
