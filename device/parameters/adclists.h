#pragma once

#include "device/protocol/adcselection.h"

#include <algorithm>
#include <array>

/// The ADC's lists in the engineering dialog: what stands where in them. Their indexes are what config.ini
/// keeps; nothing else knows them.
namespace AdcLists {

/// A choice, and what the list shows for it.
template <typename Value>
struct Entry
{
    Value value;
    const char *text;
};

inline constexpr std::array<Entry<AdcSelection::Operation>, 4> operations{
    {{AdcSelection::Operation::AOnly, "A only"},
     {AdcSelection::Operation::AOrB, "A/B"},
     {AdcSelection::Operation::Sum, "A+B"},
     {AdcSelection::Operation::Mean, "(A+B)/2"}}};

inline constexpr std::array<Entry<AdcSelection::DataFormat>, 2> dataFormats{
    {{AdcSelection::DataFormat::Bits20, "20 bit"}, {AdcSelection::DataFormat::Bits16, "16 bit"}}};

inline constexpr std::array<Entry<AdcSelection::TestMode>, 2> testModes{
    {{AdcSelection::TestMode::Off, "off"}, {AdcSelection::TestMode::On, "on"}}};

inline constexpr std::array<Entry<AdcSelection::PcRange>, 7> pcRanges{{{AdcSelection::PcRange::Pc25, "25"},
                                                                       {AdcSelection::PcRange::Pc19, "19"},
                                                                       {AdcSelection::PcRange::Pc16, "16"},
                                                                       {AdcSelection::PcRange::Pc13, "13"},
                                                                       {AdcSelection::PcRange::Pc10, "10"},
                                                                       {AdcSelection::PcRange::Pc7, "7"},
                                                                       {AdcSelection::PcRange::Pc4, "4"}}};

/// What stands at that place of a list, or `otherwise` where it has no such place.
template <typename Value, std::size_t count>
[[nodiscard]] constexpr Value valueAt(const std::array<Entry<Value>, count> &list, int index, Value otherwise)
{
    const bool isKnown = index >= 0 && index < static_cast<int>(count);
    return isKnown ? list[static_cast<std::size_t>(index)].value : otherwise;
}

/// Where it stands in a list that has it.
template <typename Value, std::size_t count>
[[nodiscard]] constexpr int indexOf(const std::array<Entry<Value>, count> &list, Value value)
{
    const auto found =
        std::find_if(list.begin(), list.end(), [value](const auto &entry) { return entry.value == value; });
    return static_cast<int>(found - list.begin());
}

/// The places of the four choices in their lists, as config.ini and the dialog keep them.
struct Indexes
{
    int operation = 0;
    int dataFormat = 0;
    int testMode = 0;
    int pcRange = 0;

    friend bool operator==(const Indexes &, const Indexes &) = default;
};

/// Places that a list does not have: "A only", 16 bit, test off, 25 pC.
[[nodiscard]] constexpr AdcSelection selection(const Indexes &indexes)
{
    return {.operation = valueAt(operations, indexes.operation, AdcSelection::Operation::AOnly),
            .dataFormat = valueAt(dataFormats, indexes.dataFormat, AdcSelection::DataFormat::Bits16),
            .testMode = valueAt(testModes, indexes.testMode, AdcSelection::TestMode::Off),
            .pcRange = valueAt(pcRanges, indexes.pcRange, AdcSelection::PcRange::Pc25)};
}

[[nodiscard]] constexpr Indexes indexes(const AdcSelection &selection)
{
    return {.operation = indexOf(operations, selection.operation),
            .dataFormat = indexOf(dataFormats, selection.dataFormat),
            .testMode = indexOf(testModes, selection.testMode),
            .pcRange = indexOf(pcRanges, selection.pcRange)};
}

} // namespace AdcLists
