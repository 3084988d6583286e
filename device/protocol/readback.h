#pragma once

#include "device/protocol/adcselection.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// Decoding of the detector's read-backs. Every input is the upper-case hexadecimal text of the bytes that
/// came. Words of 0x80000000 and above do not fit and read as 0. Pure functions.
namespace Readback {

inline constexpr int parameterBytes = 256;
inline constexpr int eepromBytes = 129;
inline constexpr int versionBytes = 5;

/// The 256-byte parameter read-back.
struct Parameters
{
    int mode = 0; ///< 0 is "QV 1K", anything else "QV 256"
    int adcWord = 0;
    AdcSelection adc;
    QList<int> voltageCodes;   ///< 16, as on the wire
    QList<qint32> timingWords; ///< 18, as on the wire
};

/// Empty when the reply is shorter than 256 bytes. What is longer is ignored.
[[nodiscard]] std::optional<Parameters> parameters(const QByteArray &reply);

/// The 32 EEPROM words; empty when the reply is shorter than 129 bytes.
[[nodiscard]] std::optional<QList<int>> eeprom(const QByteArray &reply);

/// "1.2.3.4.5" of 01 02 03 45 xx; empty unless the reply is exactly 5 bytes.
[[nodiscard]] std::optional<QString> version(const QByteArray &reply);

} // namespace Readback
