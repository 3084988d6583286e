#pragma once

#include "simulator/bridge/bridge.h"

#include <array>
#include <vector>

/// The status of every call that takes a handle.
inline std::vector<simulator::Status> statusOfAllCalls(simulator::Bridge &bridge, simulator::Handle handle)
{
    quint32 a = 0;
    quint32 b = 0;
    quint32 c = 0;
    std::array<char, 8> buffer{};
    return {bridge.resetDevice(handle),
            bridge.setBitMode(handle, 0xFF, 0x40),
            bridge.setLatencyTimer(handle, 2),
            bridge.setUsbParameters(handle, 65536, 65536),
            bridge.setFlowControl(handle, 0x0100, 0, 0),
            bridge.purge(handle, 3),
            bridge.setTimeouts(handle, 10, 10),
            bridge.getStatus(handle, &a, &b, &c),
            bridge.read(handle, buffer.data(), 1, &a),
            bridge.write(handle, buffer.data(), 1, &a)};
}
