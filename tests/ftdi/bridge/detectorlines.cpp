#include "tests/ftdi/bridge/detectorlines.h"

#include <algorithm>

using simulator::SendQueue;

DetectorLines::DetectorLines(simulator::Settings settings)
    : m_settings(std::move(settings)),
      m_firmware(m_settings.serialNumbers.value(0), QStringLiteral("virtual-detector-eeprom.ini"), m_settings)
{
}

std::size_t DetectorLines::available(Time now) const
{
    return static_cast<std::size_t>(queue().available(now));
}

void DetectorLines::take(std::span<std::uint8_t> out, Time now)
{
    while (!out.empty()) {
        const auto longest = static_cast<qsizetype>(out.size());
        const SendQueue::Chunk chunk = queue().take(longest, longest, now);
        const auto part = out.first(static_cast<std::size_t>(chunk.length));
        if (chunk.isImage)
            m_sensor.read(chunk.recipe, chunk.offset, part);
        else
            std::copy(chunk.bytes.cbegin(), chunk.bytes.cend(), part.begin());
        out = out.subspan(part.size());
    }
}

std::optional<Lines::Time> DetectorLines::nextArrival(Time now) const
{
    return queue().nextArrival(now);
}

void DetectorLines::write(std::span<const std::uint8_t> bytes, Time now)
{
    m_firmware.write({reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())},
                     now);
}
