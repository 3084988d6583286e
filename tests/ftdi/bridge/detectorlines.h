#pragma once

#include "simulator/firmware/firmware.h"
#include "simulator/sensor/sensor.h"
#include "simulator/settings/settings.h"
#include "tests/ftdi/bridge/lines.h"

/// The virtual detector's firmware and sensor on the lines of a bridge.
class DetectorLines : public Lines
{
public:
    /// The EEPROM's file lies in the working folder.
    explicit DetectorLines(simulator::Settings settings);

    [[nodiscard]] std::size_t available(Time now) const override;
    void take(std::span<std::uint8_t> out, Time now) override;
    [[nodiscard]] std::optional<Time> nextArrival(Time now) const override;
    void write(std::span<const std::uint8_t> bytes, Time now) override;
    void setSynchronous(bool isSynchronous) override { m_firmware.setSynchronous(isSynchronous); }
    void setLatency(simulator::Milliseconds latency) override { queue().setLatency(latency); }
    void purge(Time now) override { queue().purge(now); }
    void lost() override { m_firmware.hostLost(); }

private:
    [[nodiscard]] simulator::SendQueue &queue() const { return m_firmware.sendQueue(); }

    simulator::Settings m_settings;
    mutable simulator::Firmware m_firmware;
    simulator::Sensor m_sensor;
};
