#pragma once

#include <QtGlobal>

#include <atomic>

/// What went through the driver library of the soak since it was loaded.
struct SoakCounts
{
    std::atomic<qint64> bytesRead{0};
    std::atomic<qint64> writes{0};
    std::atomic<qint64> opened{0};
    std::atomic<qint64> failed{0}; ///< calls that were told to fail, by whatever fault
};
