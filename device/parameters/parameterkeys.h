#pragma once

#include "device/protocol/parameterpackets.h"
#include "device/protocol/timing.h"

#include <QString>

/// Keys of the device parameters in config.ini: the object names of the engineering dialog's widgets. The
/// dialog keeps its fields under them, and the settings page downloads what it finds there. Which field holds
/// what is known here only.
namespace ParameterKeys {

inline const QString operation = QStringLiteral("comboBox_ope");
inline const QString dataFormat = QStringLiteral("comboBox_data");
inline const QString testMode = QStringLiteral("comboBox_mode");
inline const QString pcRange = QStringLiteral("comboBox_pcrange");
inline const QString mode = QStringLiteral("mode"); ///< true: "QV 1K"

// Numbers of the fields: voltages, timing values and EEPROM words, each group in the order of the wire.
inline constexpr int firstVoltage = 1;
inline constexpr int firstTiming = firstVoltage + ParameterPacket::voltageCount;
inline constexpr int firstEeprom = firstTiming + Timing::count;
inline constexpr int lastField = firstEeprom + ParameterPacket::eepromCount - 1;
static_assert(firstTiming == 17 && firstEeprom == 35 && lastField == 66);

// The four rails that the operator sets.
inline constexpr int gateOnVoltage = 7;   ///< VGG
inline constexpr int gateOffVoltage = 8;  ///< VEE
inline constexpr int cathodeVoltage = 15; ///< VSS
inline constexpr int commonVoltage = 16;  ///< VCOM

/// Field `number`: "lineEdit_1" to "lineEdit_66".
[[nodiscard]] inline QString field(int number)
{
    return QStringLiteral("lineEdit_%1").arg(number);
}

} // namespace ParameterKeys
