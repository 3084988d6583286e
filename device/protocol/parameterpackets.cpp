#include "device/protocol/parameterpackets.h"

#include "device/protocol/commandframes.h"
#include "device/protocol/saturated.h"

namespace {

enum Code : char {
    Mode = 0x00,
    Adc = 0x01,
    Voltages = 0x02,
    TimingWords = 0x10,
    Eeprom = static_cast<char>(0xEE)
};

template <typename Values>
QByteArray payloadOf(const Values &values, int width)
{
    QByteArray payload;
    for (const auto value : values)
        payload += CommandFrame::hexBytes(static_cast<int>(value), width);
    return payload;
}

} // namespace

namespace ParameterPacket {

int voltageCode(double volts)
{
    return saturatedToInt((volts + 20.0) / 40.0 * 65536.0);
}

double voltageValue(int raw)
{
    return raw * (1.0 / 65536) * 40 - 20;
}

QByteArray setMode(bool is1k)
{
    return CommandFrame::parameters(Mode,
                                    QByteArray(1, is1k ? static_cast<char>(0x00) : static_cast<char>(0x10)));
}

QByteArray setAdc(const AdcSelection &selection)
{
    return CommandFrame::parameters(Adc, CommandFrame::hexBytes(selection.word(), adcBytes));
}

QByteArray setVoltages(const QList<int> &codes)
{
    return CommandFrame::parameters(Voltages, payloadOf(codes, voltageBytes));
}

QByteArray setTiming(const QList<qint32> &words)
{
    return CommandFrame::parameters(TimingWords, payloadOf(words, wordBytes));
}

QByteArray eepromWord(quint32 word)
{
    return CommandFrame::hexBytes(static_cast<int>(word), wordBytes);
}

QByteArray sendEeprom(const QList<quint32> &words)
{
    return CommandFrame::parameters(Eeprom, payloadOf(words, wordBytes));
}

} // namespace ParameterPacket
