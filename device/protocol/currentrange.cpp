#include "device/protocol/currentrange.h"

#include "device/protocol/parameterpackets.h"

namespace CurrentRange {

QList<int> timingSequence(int integrationTime)
{
    // Unsigned arithmetic is what wraps.
    const quint32 unsignedMuxHigh = static_cast<quint32>(integrationTime) + 15700;
    const quint32 unsignedCkHigh = 4 * unsignedMuxHigh + 20000;
    const quint32 unsignedClkCycle = 4 * unsignedCkHigh + 16000;

    const auto muxHigh = static_cast<int>(unsignedMuxHigh);
    const auto ckHigh = static_cast<int>(unsignedCkHigh);
    const auto clkCycle = static_cast<int>(unsignedClkCycle);
    return {
        static_cast<int>(258 * unsignedClkCycle + 2000), // frame_period
        1000,                                            // frame_head
        1000,                                            // frame_tail
        clkCycle,                                        // clk_cycle
        clkCycle / 2,                                    // clk_high
        2000,                                            // out_gap
        1000,                                            // outp_ck_gap
        ckHigh,                                          // ck_high
        4000,                                            // ck_gap
        1000,                                            // ck_outn_gap
        1000,                                            // ckp_mux_gap
        muxHigh,                                         // mux_high
        6000,                                            // mux_gap
        1000,                                            // mux_ckn_gap
        300,                                             // adc_start_delay
        integrationTime,                                 // adc_intA
        15400,                                           // adc_end_delay
        21700,                                           // adc_intB
    };
}

QList<int> toWire(const QList<int> &sequence)
{
    QList<int> wire;
    for (const int value : sequence)
        wire.append(
            ParameterPacket::timingToWire(ParameterPacket::firstTimingField + int(wire.size()), value));
    return wire;
}

} // namespace CurrentRange
