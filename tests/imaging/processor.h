#pragma once

#include <QtGlobal>

#ifdef Q_PROCESSOR_X86_64
#include <cpuid.h>
#endif

/// What the processor itself says that it can do, and the system lets it.
namespace Processor {

#ifdef Q_PROCESSOR_X86_64

/// Parts of the state that the system saves for each thread.
inline constexpr quint32 sse = 1U << 1U;
inline constexpr quint32 avx = 1U << 2U;
inline constexpr quint32 avx512 = 7U << 5U;

struct Features
{
    quint32 ebx = 0; ///< of leaf 7
    quint32 saved = 0;
};

inline Features features()
{
    quint32 eax = 0;
    quint32 ebx = 0;
    quint32 ecx = 0;
    quint32 edx = 0;
    constexpr quint32 savesState = 1U << 27U;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0 || (ecx & savesState) == 0)
        return {};
    quint32 low = 0;
    quint32 high = 0;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) == 0)
        return {};
    return {ebx, low};
}

inline bool has(quint32 flags, quint32 state)
{
    const Features found = features();
    return (found.ebx & flags) == flags && (found.saved & state) == state;
}

inline bool hasAvx2()
{
    return has(1U << 5U, sse | avx);
}

/// F, DQ, BW and VL.
inline bool hasAvx512()
{
    return has(1U << 16U | 1U << 17U | 1U << 30U | 1U << 31U, sse | avx | avx512);
}

#else

inline bool hasAvx2()
{
    return false;
}

inline bool hasAvx512()
{
    return false;
}

#endif

} // namespace Processor
