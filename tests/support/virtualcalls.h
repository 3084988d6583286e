#pragma once

#include "d2xx/functions.h"

#include <QLibrary>
#include <QtGlobal>

#include <type_traits>

/// The calls of the virtual detector's library at that path, but for those that are not of the interface:
/// what goes on from there looks like a detector on a cable.
inline d2xx::Functions callsOfVirtualDetector(const QString &path)
{
    QLibrary library(path);
    d2xx::Functions calls;
    calls.forEachCall([&library](const char *name, auto &call) {
        call = reinterpret_cast<std::remove_reference_t<decltype(call)>>(library.resolve(name));
        if (call == nullptr)
            qFatal("%s: %s", name, qPrintable(library.errorString()));
    });
    return calls;
}
