#include "device/currentrange.h"

#include "device/parameterpackets.h"

namespace CurrentRange {

QList<int> timingSequence(int integrationTime)
{
    const int muxHigh = integrationTime + 15700;
    const int ckHigh = 4 * muxHigh + 20000;
    const int clkCycle = 4 * ckHigh + 16000;
    return {
        258 * clkCycle + 2000, // frame_period
        1000,                  // frame_head
        1000,                  // frame_tail
        clkCycle,              // clk_cycle
        clkCycle / 2,          // clk_high
        2000,                  // out_gap
        1000,                  // outp_ck_gap
        ckHigh,                // ck_high
        4000,                  // ck_gap
        1000,                  // ck_outn_gap
        1000,                  // ckp_mux_gap
        muxHigh,               // mux_high
        6000,                  // mux_gap
        1000,                  // mux_ckn_gap
        300,                   // adc_start_delay
        integrationTime,       // adc_intA
        15400,                 // adc_end_delay
        21700,                 // adc_intB
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
