#pragma once

#include "tests/simulator/bridge/virtualcable.h"

/// To a read-back of the version.
inline const QByteArray versionReply = QByteArray::fromHex("0102034500");

/// Open cable with these lines in the group of faults and no pacing.
class FaultyCable : public VirtualCable
{
public:
    explicit FaultyCable(const QByteArray &faults) : VirtualCable("Pacing=none\n[Faults]\n" + faults)
    {
        open();
    }

    QByteArray block(int number) { return exchange(frame(0, number), simulator::blockBytes); }

    /// What looking at the waiting bytes comes to.
    simulator::Status look()
    {
        quint32 rx = 0;
        quint32 tx = 0;
        quint32 events = 0;
        return bridge->getStatus(handle, &rx, &tx, &events);
    }

    /// What one write of the bytes comes to, and how many of them it counts.
    std::pair<simulator::Status, quint32> write(const QByteArray &bytes)
    {
        quint32 written = 0xAAAA;
        const auto result =
            bridge->write(handle, bytes.constData(), static_cast<quint32>(bytes.size()), &written);
        return {result, written};
    }
};
