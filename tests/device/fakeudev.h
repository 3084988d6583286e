#pragma once

#include <QByteArray>
#include <QList>

/// A udev that a test drives by hand: it stands in for the calls of the system's library, and tells of what a
/// test says is plugged in and out. One thread.
class FakeUdev
{
public:
    /// Nothing is watched, and nothing is left of what was before.
    static void reset();

    /// Something happened: "add" or "remove" and such, and the property PRODUCT, empty where there is none.
    static void tell(const char *action, const QByteArray &product);

    /// Something is told that cannot be received.
    static void tellNothing();
    /// That call of the library fails from now on.
    enum class Call { None, New, Monitor, Filter, Receiving };
    static void fail(Call call);

    /// What is watched: "subsystem/device type", once for each that began to listen.
    [[nodiscard]] static QList<QByteArray> watched();
    /// How often an event was asked for.
    [[nodiscard]] static int timesAsked();
    /// What was handed out and not given back.
    [[nodiscard]] static int handedOut();
};
