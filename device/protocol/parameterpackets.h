#pragma once

#include <QByteArray>
#include <QList>

/// The parameter frames (class 01) and the values they carry. Pure functions, any thread.
namespace ParameterPacket {

inline constexpr int voltageCount = 16;
inline constexpr int timingCount = 18;
inline constexpr int eepromCount = 32;
inline constexpr int firstVoltageField = 1; ///< number N of the field "lineEdit_N" that holds the first
inline constexpr int firstTimingField = 17;
inline constexpr int firstEepromField = 35;

/// The four ADC selections as indexes into their lists.
struct AdcSelection
{
    int operation = 0;  ///< "A only", "A/B", "A+B", "(A+B)/2"
    int dataFormat = 0; ///< "20 bit", "16 bit"
    int testMode = 0;   ///< "off", "on"
    int pcRange = 0;    ///< "25", "19", "16", "13", "10", "7", "4" pC

    friend bool operator==(const AdcSelection &, const AdcSelection &) = default;
};

/// The 16-bit ADC word. Indexes out of range: operation "A only", 16 bit, test off, range code 6.
[[nodiscard]] int adcWord(const AdcSelection &selection);
/// The inverse of adcWord(); the upper five bits are ignored.
[[nodiscard]] AdcSelection adcSelection(int word);

/// trunc((volts + 20) / 40 * 65536): -20 V to +20 V onto 0 to 65536.
[[nodiscard]] int voltageCode(double volts);
/// raw / 65536 * 40 - 20, volts.
[[nodiscard]] double voltageValue(int raw);

/// Value of timing field `field` (17 to 34) as it goes over the wire: 80 % of it, truncated, for the two ADC
/// integration fields 32 and 34, otherwise the value itself.
[[nodiscard]] int timingToWire(int field, int value);
/// The inverse: divided by 0.8 and truncated for fields 32 and 34.
[[nodiscard]] int timingFromWire(int field, int word);

[[nodiscard]] QByteArray setMode(bool is1k);
[[nodiscard]] QByteArray setAdc(const AdcSelection &selection);
/// Two bytes a code. Lists are sent as long as they are.
[[nodiscard]] QByteArray setVoltages(const QList<int> &codes);
/// Four bytes a value, already as it goes over the wire.
[[nodiscard]] QByteArray setTiming(const QList<int> &values);
/// Four bytes a word.
[[nodiscard]] QByteArray sendEeprom(const QList<quint32> &words);

} // namespace ParameterPacket
