#pragma once

#include "tests/support/commandbytes.h"

/// Sample of pixel `index` of a raw frame or of a part that begins at a pixel.
inline quint32 sampleAt(const QByteArray &raw, qsizetype index)
{
    return qFromBigEndian<quint32>(raw.constData() + index * 4);
}
