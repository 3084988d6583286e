#include "tests/support/peakmemory.h"

#include <QtGlobal>

#include <qt_windows.h>

#include <psapi.h>

int peakMemoryMiB()
{
    PROCESS_MEMORY_COUNTERS counters{};
    if (!K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ||
        counters.PeakWorkingSetSize == 0)
        qFatal("the system does not tell how much memory was used");
    return static_cast<int>(counters.PeakWorkingSetSize >> 20U);
}
