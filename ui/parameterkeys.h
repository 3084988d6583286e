#pragma once

#include <QString>

/// Keys of the device parameters in config.ini: the object names of the engineering dialog's widgets. The
/// dialog keeps its fields under them, and the settings page downloads what it finds there.
namespace ParameterKeys {

inline const QString operation = QStringLiteral("comboBox_ope");
inline const QString dataFormat = QStringLiteral("comboBox_data");
inline const QString testMode = QStringLiteral("comboBox_mode");
inline const QString pcRange = QStringLiteral("comboBox_pcrange");
inline const QString mode = QStringLiteral("mode"); ///< true: "QV 1K"

/// Field `number`, 1 to 66: "lineEdit_1" to "lineEdit_66".
[[nodiscard]] inline QString field(int number)
{
    return QStringLiteral("lineEdit_%1").arg(number);
}

} // namespace ParameterKeys
