#pragma once

#include "device/d2xx.h"

#include <QLibrary>
#include <QString>

/// The driver library that the program loads by its file name and that hands each call on to the test.
namespace ForwardLibrary {

inline QString path()
{
    return QStringLiteral(QV1K_FORWARD_LIBRARY);
}

inline void use(const d2xx::Functions &functions)
{
    QLibrary library(path());
    const auto set = reinterpret_cast<void (*)(const d2xx::Functions *)>(library.resolve("Forward_use"));
    set(&functions);
}

/// Reports to the program that a detector was plugged in or pulled out.
inline void reportDeviceEvent(bool arrived)
{
    QLibrary library(path());
    const auto report = reinterpret_cast<void (*)(int)>(library.resolve("Forward_deviceEvent"));
    report(arrived ? 1 : 0);
}

} // namespace ForwardLibrary
