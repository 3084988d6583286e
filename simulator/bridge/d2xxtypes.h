#pragma once

#include <QtGlobal>

namespace simulator {

/// Status codes of the D2XX interface.
enum class Status : quint32 {
    Ok = 0,
    InvalidHandle = 1,
    DeviceNotFound = 2,
    DeviceNotOpened = 3,
    IoError = 4,
    InvalidParameter = 6
};

/// An open device. A number that never comes again: an old one is recognised and never looked into.
using Handle = quintptr;

/// One attached device as the interface lays it out.
struct DeviceRecord
{
    quint32 flags;
    quint32 type;
    quint32 id;
    quint32 locationId;
    char serialNumber[16]; ///< NUL-terminated
    char description[64];  ///< NUL-terminated
    Handle handle;         ///< 0 when it is not open
};
static_assert(sizeof(void *) != 8 || sizeof(DeviceRecord) == 104);

} // namespace simulator
