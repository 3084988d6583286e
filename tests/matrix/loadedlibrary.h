#pragma once

#include "tests/matrix/arming.h"

#include <QLibrary>
#include <QString>

/// The faulty library in this process, which the program loads under the same name.
class LoadedLibrary
{
public:
    [[nodiscard]] static QString path() { return QStringLiteral(QV1K_MATRIX_LIBRARY); }

    static void arm(const Arming &arming) { call<FaultyLibrary::Arm>("Matrix_arm")(&arming); }
    static void heal() { call<FaultyLibrary::Heal>("Matrix_heal")(); }
    [[nodiscard]] static int happened() { return call<FaultyLibrary::Happened>("Matrix_happened")(); }
    static void report(bool arrived) { call<FaultyLibrary::Report>("Matrix_report")(arrived ? 1 : 0); }

private:
    template <typename Function>
    static Function *call(const char *name)
    {
        QLibrary library(path());
        auto *function = reinterpret_cast<Function *>(library.resolve(name));
        if (function == nullptr)
            qFatal("%s: %s", name, qPrintable(library.errorString()));
        return function;
    }
};
