#include "device/parameters/parameterdownload.h"

#include "device/parameters/adclists.h"
#include "device/parameters/parameterkeys.h"

namespace ParameterDownload {

QByteArray timing(int integrationTime)
{
    return ParameterPacket::setTiming(Timing::ofRange(integrationTime).toWire());
}

QByteArray adc(const Stored &stored)
{
    return ParameterPacket::setAdc(
        AdcLists::selection({.operation = stored(ParameterKeys::operation, 0).toInt(),
                             .dataFormat = stored(ParameterKeys::dataFormat, 0).toInt(),
                             .testMode = stored(ParameterKeys::testMode, 0).toInt(),
                             .pcRange = stored(ParameterKeys::pcRange, 0).toInt()}));
}

QByteArray voltages(const Rails &rails, const Stored &stored)
{
    const auto volts = [&](int number) {
        switch (number) {
        case ParameterKeys::gateOnVoltage:
            return rails.von;
        case ParameterKeys::gateOffVoltage:
            return rails.voff;
        case ParameterKeys::cathodeVoltage:
            return rails.vss;
        case ParameterKeys::commonVoltage:
            return rails.vcom;
        default:
            return stored(ParameterKeys::field(number), 0.0).toDouble();
        }
    };
    QList<int> codes;
    for (int number = ParameterKeys::firstVoltage; number < ParameterKeys::firstTiming; ++number)
        codes.append(ParameterPacket::voltageCode(volts(number)));
    return ParameterPacket::setVoltages(codes);
}

} // namespace ParameterDownload
