#include "process/processend.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <qt_windows.h>

#include <cstdio>
#endif

int endProcess(int status)
{
#ifdef Q_OS_WIN
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
#endif
    return status;
}
