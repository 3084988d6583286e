#pragma once

#include <QString>

/// What the process holds of the system, from /proc.
struct ProcessFigures
{
    qint64 memoryKiB = 0; ///< of its own in memory: comes and goes with how the heap is scattered
    qint64 heapKiB = 0;   ///< what was asked of the heap and not given back
    qsizetype threads = 0;
    qsizetype handles = 0;

    /// After the heap has given back what is free.
    [[nodiscard]] static ProcessFigures now();
    /// The larger one of each figure.
    [[nodiscard]] ProcessFigures most(const ProcessFigures &other) const;
    /// Heap, threads or handles; of the heap more than libraries cache.
    [[nodiscard]] bool holdsMoreThan(const ProcessFigures &before) const;
    [[nodiscard]] QString text() const;
};
