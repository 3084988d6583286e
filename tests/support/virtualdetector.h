#pragma once

#include "tests/support/workingfolder.h"

/// Writes the settings of the virtual detector, which sends as fast as it can unless `lines` say otherwise.
inline void settleVirtualDetector(const WorkingFolder &folder, const QByteArray &lines = {})
{
    folder.write(QStringLiteral("virtual-detector.ini"), "[General]\nPacing=none\n" + lines);
}
