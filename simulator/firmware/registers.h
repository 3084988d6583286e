#pragma once

#include "simulator/clock.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>

namespace simulator {

/// The detector's parameters as they come over the wire. After power-up they are those of the 150 nA range.
class Registers
{
public:
    static constexpr int voltageCount = 16;
    static constexpr int timingCount = 18;
    static constexpr int readbackBytes = 256;

    /// Set from the payload of a parameter frame, most significant byte first. False, and nothing changed,
    /// when it is not as long as it must be. Fewer voltages or timing words than there are change the first
    /// ones.
    [[nodiscard]] bool setMode(QByteArrayView payload);
    [[nodiscard]] bool setAdcWord(QByteArrayView payload);
    [[nodiscard]] bool setVoltages(QByteArrayView payload);
    [[nodiscard]] bool setTiming(QByteArrayView payload);

    /// Time from the start of one frame to that of the next.
    [[nodiscard]] Nanoseconds framePeriod() const { return Nanoseconds(m_timing[0]); }
    /// Time in which a pixel collects its charge, ns.
    [[nodiscard]] double integrationNs() const;
    /// Charge that fills the converter, pC.
    [[nodiscard]] double fullScaleCharge() const;

    /// Mode, ADC word, voltages, timing words; the rest is 0.
    [[nodiscard]] QByteArray readback() const;

private:
    quint8 m_mode = 0;
    quint16 m_adcWord = 0x01B6; // A only, 20 bit, test off, 25 pC
    std::array<quint16, voltageCount> m_voltages{32768, 32768, 32768, 32768, 32768, 32768, 57344, 8192,
                                                 32768, 32768, 32768, 32768, 32768, 32768, 33587, 16384};
    std::array<quint32, timingCount> m_timing{158104400, 1000,   1000, 612800, 306400, 2000,
                                              1000,      149200, 4000, 1000,   1000,   32300,
                                              6000,      1000,   300,  13280,  15400,  17360};
};

} // namespace simulator
