#pragma once

#include <QString>

/// What the process holds of the system, from /proc.
struct ProcessFigures
{
    qint64 memoryKiB = 0; ///< resident
    qsizetype threads = 0;
    qsizetype handles = 0;

    /// After the heap has given back what is free.
    [[nodiscard]] static ProcessFigures now();
    /// The larger one of each figure.
    [[nodiscard]] ProcessFigures most(const ProcessFigures &other) const;
    /// By more than a heap is scattered. Never under AddressSanitizer, which keeps what was freed.
    [[nodiscard]] bool hasMoreMemoryThan(const ProcessFigures &before) const;
    [[nodiscard]] QString text() const;
};
