#include "device/protocol/adcselection.h"

#include <algorithm>

namespace {

int operationBits(AdcSelection::Operation operation)
{
    switch (operation) {
    case AdcSelection::Operation::AOrB:
        return 0b000;
    case AdcSelection::Operation::Sum:
        return 0b011;
    case AdcSelection::Operation::Mean:
        return 0b111;
    case AdcSelection::Operation::AOnly:
        break;
    }
    return 0b001;
}

AdcSelection::Operation operationOf(int word)
{
    switch (word >> 8 & 0b011) {
    case 0b00:
        return AdcSelection::Operation::AOrB;
    case 0b11:
        return (word >> 10 & 1) == 1 ? AdcSelection::Operation::Mean : AdcSelection::Operation::Sum;
    default:
        return AdcSelection::Operation::AOnly;
    }
}

} // namespace

int AdcSelection::word() const
{
    const int data = dataFormat == DataFormat::Bits20 ? 1 : 0;
    const int test = testMode == TestMode::On ? 1 : 0;
    const auto range = static_cast<int>(pcRange);
    return operationBits(operation) << 8 | data << 7 | test << 6 | range << 3 | range;
}

AdcSelection AdcSelection::ofWord(int word)
{
    return {.operation = operationOf(word),
            .dataFormat = (word >> 7 & 1) == 1 ? DataFormat::Bits20 : DataFormat::Bits16,
            .testMode = (word >> 6 & 1) == 1 ? TestMode::On : TestMode::Off,
            .pcRange = std::min(static_cast<PcRange>(word & 0b111), PcRange::Pc25)};
}
