#pragma once

#include <QByteArray>
#include <QtEndian>

#include <numeric>

/// Bytes written as in a protocol listing: "FF AA 03 A0 0D EB".
inline QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

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

/// Sample of pixel `index` of a raw frame or of a part that begins at a pixel.
inline quint32 sampleAt(const QByteArray &raw, qsizetype index)
{
    return qFromBigEndian<quint32>(raw.constData() + index * 4);
}
