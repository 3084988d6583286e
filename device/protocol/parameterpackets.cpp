#include "device/protocol/parameterpackets.h"

#include "device/protocol/commandframes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

enum Code : char { Mode = 0x00, Adc = 0x01, Voltages = 0x02, Timing = 0x10, Eeprom = char(0xEE) };

constexpr int voltageWidth = 2;
constexpr int wordWidth = 4;
constexpr int highestRangeCode = 6;
constexpr double integrationScale = 0.8; ///< of the two ADC integration times, on the wire

/// Bits 10 to 8 for each operation format, in the order of the selection.
constexpr std::array<int, 4> operationBits{0b001, 0b000, 0b011, 0b111};

constexpr bool isIntegrationTime(int field)
{
    return field == 32 || field == 34;
}

/// Truncation toward zero of a value that may lie outside the 32-bit range.
int truncated(double value)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return std::isnan(value) ? 0 : int(std::clamp(value, lowest, highest));
}

template <typename Values>
QByteArray payloadOf(const Values &values, int width)
{
    QByteArray payload;
    for (const auto value : values)
        payload += CommandFrame::hexBytes(int(value), width);
    return payload;
}

} // namespace

namespace ParameterPacket {

int adcWord(const AdcSelection &s)
{
    const bool known = s.operation >= 0 && s.operation < int(operationBits.size());
    const int operation = operationBits[known ? std::size_t(s.operation) : 0];
    const int dataFormat = s.dataFormat == 0 ? 1 : 0;
    const int testMode = s.testMode == 1 ? 1 : 0;
    const bool inRange = s.pcRange >= 0 && s.pcRange <= highestRangeCode;
    const int rangeCode = highestRangeCode - (inRange ? s.pcRange : 0);
    return operation << 8 | dataFormat << 7 | testMode << 6 | rangeCode << 3 | rangeCode;
}

AdcSelection adcSelection(int word)
{
    AdcSelection s;
    switch (word >> 8 & 0b011) {
    case 0b00:
        s.operation = 1;
        break;
    case 0b11:
        s.operation = (word >> 10 & 1) == 1 ? 3 : 2;
        break;
    default:
        s.operation = 0;
    }
    s.dataFormat = (word >> 7 & 1) == 1 ? 0 : 1;
    s.testMode = word >> 6 & 1;
    s.pcRange = std::max(0, highestRangeCode - (word & 0b111));
    return s;
}

int voltageCode(double volts)
{
    return truncated((volts + 20.0) / 40.0 * 65536.0);
}

double voltageValue(int raw)
{
    return raw * (1.0 / 65536) * 40 - 20;
}

int timingToWire(int field, int value)
{
    return isIntegrationTime(field) ? truncated(value * integrationScale) : value;
}

int timingFromWire(int field, int word)
{
    return isIntegrationTime(field) ? truncated(word / integrationScale) : word;
}

QByteArray setMode(bool is1k)
{
    return CommandFrame::parameters(Mode, QByteArray(1, is1k ? char(0x00) : char(0x10)));
}

QByteArray setAdc(const AdcSelection &selection)
{
    return CommandFrame::parameters(Adc, CommandFrame::hexBytes(adcWord(selection), 2));
}

QByteArray setVoltages(const QList<int> &codes)
{
    return CommandFrame::parameters(Voltages, payloadOf(codes, voltageWidth));
}

QByteArray setTiming(const QList<int> &values)
{
    return CommandFrame::parameters(Timing, payloadOf(values, wordWidth));
}

QByteArray sendEeprom(const QList<quint32> &words)
{
    return CommandFrame::parameters(Eeprom, payloadOf(words, wordWidth));
}

} // namespace ParameterPacket
