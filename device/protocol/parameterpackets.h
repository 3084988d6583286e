#pragma once

#include "device/protocol/adcselection.h"

#include <QByteArray>
#include <QList>

/// The parameter frames (class 01) and the values they carry. Pure functions, any thread.
namespace ParameterPacket {

inline constexpr int voltageCount = 16;
inline constexpr int eepromCount = 32;

// Bytes on the wire, of one.
inline constexpr int adcBytes = 2;
inline constexpr int voltageBytes = 2;
inline constexpr int wordBytes = 4; ///< of timing and EEPROM

/// trunc((volts + 20) / 40 * 65536): -20 V to +20 V onto 0 to 65536.
[[nodiscard]] int voltageCode(double volts);
/// raw / 65536 * 40 - 20, volts.
[[nodiscard]] double voltageValue(int raw);

[[nodiscard]] QByteArray setMode(bool is1k);
[[nodiscard]] QByteArray setAdc(const AdcSelection &selection);
/// Two bytes a code. Lists are sent as long as they are.
[[nodiscard]] QByteArray setVoltages(const QList<int> &codes);
/// Four bytes a word; see Timing::toWire().
[[nodiscard]] QByteArray setTiming(const QList<qint32> &words);
/// One EEPROM word as it goes over the cable: its signed number in hexadecimal, so that words of 2147483648
/// and more arrive as others.
[[nodiscard]] QByteArray eepromWord(quint32 word);
/// Four bytes a word.
[[nodiscard]] QByteArray sendEeprom(const QList<quint32> &words);

} // namespace ParameterPacket
