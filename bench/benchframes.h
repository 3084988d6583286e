#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QtEndian>

/// A raw frame as a detector sends it: samples all over the 20 useful bits.
inline QByteArray benchFrame(quint32 seed)
{
    constexpr int pixels = 1024 * 1024;
    QRandomGenerator random(seed);
    QByteArray bytes(qsizetype(pixels) * 4, Qt::Uninitialized);
    for (int i = 0; i < pixels; ++i)
        qToBigEndian(4096 + random.bounded(1u << 20), bytes.data() + qsizetype(i) * 4);
    return bytes;
}
