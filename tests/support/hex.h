#pragma once

#include <QByteArray>

/// Bytes written as in a protocol listing: "FF AA 03 A0 0D EB", with or without the spaces.
inline QByteArray hex(const QByteArray &text)
{
    return QByteArray::fromHex(text);
}

/// The other way round, upper case and without spaces.
inline QByteArray hexText(const QByteArray &bytes)
{
    return bytes.toHex().toUpper();
}

/// With a space between two bytes.
inline QByteArray spacedHex(const QByteArray &bytes)
{
    return bytes.toHex(' ').toUpper();
}
