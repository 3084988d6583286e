#pragma once

#include <QByteArray>
#include <QVariant>

#include <functional>

/// The frames that set a detector up for an acquisition, of what is given and of what config.ini keeps. They
/// are sent in this order, each when the one before was acknowledged. Pure functions, any thread.
namespace ParameterDownload {

/// What config.ini keeps under a key, or the second where it keeps nothing.
using Stored = std::function<QVariant(const QString &key, const QVariant &otherwise)>;

/// The four rails that an operator sets, volts. Outside these limits nothing is offered.
struct Rails
{
    double von = 0.0;
    double voff = 0.0;
    double vss = 0.0;
    double vcom = 0.0;
};
inline constexpr double lowestRail = -15.0;
inline constexpr double highestRail = 15.0;
inline constexpr int railDecimals = 2;

/// The timing of a range, by its base time: Timing::ofRange().
[[nodiscard]] QByteArray timing(int integrationTime);

/// The ADC word: what is kept of it.
[[nodiscard]] QByteArray adc(const Stored &stored);

/// All sixteen voltages: the four, and what is kept of the others, 0 V where nothing is.
[[nodiscard]] QByteArray voltages(const Rails &rails, const Stored &stored);

} // namespace ParameterDownload
