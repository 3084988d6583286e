#pragma once

#include "d2xx/types.h"

#include <QString>
#include <QStringList>

/// Which bridges are detectors, where a driver library lists every one of the maker's
/// (D2xx::listsAllBridges()): those whose description or serial number begins with one of these names. All
/// others are devices of other people. Where a library does not say so, what it lists are detectors.
class DetectorNames
{
public:
    DetectorNames() = default;
    /// Names with commas between them. Blanks around a name do not count, and empty names are none; without
    /// any it is QV1K.
    explicit DetectorNames(const QString &names);

    [[nodiscard]] bool include(const d2xx::DeviceRecord &record) const;

private:
    QStringList m_names{QStringLiteral("QV1K")};
};
