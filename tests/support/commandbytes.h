#pragma once

#include "tests/support/hex.h"

#include <QtEndian>

#include <initializer_list>
#include <numeric>

// Commands put together from the protocol, independently of the program.

/// The frame of a command without payload.
inline QByteArray frame(int frameClass, int code)
{
    QByteArray bytes = hex("FF AA 00 00 0D EB");
    bytes[2] = static_cast<char>(frameClass);
    bytes[3] = static_cast<char>(code);
    return bytes;
}

/// A parameter frame with its checksum.
inline QByteArray parameterFrame(int code, const QByteArray &payload)
{
    const int sum = std::accumulate(payload.begin(), payload.end(), 0);
    return frame(1, code) + payload + QByteArray(1, static_cast<char>(sum));
}

/// Four bytes a word, most significant first.
inline QByteArray words(std::initializer_list<quint32> values)
{
    QByteArray bytes;
    for (const quint32 value : values) {
        const quint32 ordered = qToBigEndian(value);
        bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
    }
    return bytes;
}
