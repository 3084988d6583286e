#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

/// Which arguments the calls take: a bridge refuses all others with Status::InvalidParameter.
namespace d2xx {

/// How openEx() understands its key: the program opens by serial number only (NUL-terminated UTF-8).
inline constexpr std::uint32_t openBySerialNumber = 1;

/// Mask of setBitMode(): all eight data lines.
inline constexpr std::uint8_t allDataLines = 0xFF;

enum BitMode : std::uint8_t {
    bitModeReset = 0x00,
    bitModeAsyncBitBang = 0x01,
    bitModeMpsse = 0x02,
    bitModeSyncBitBang = 0x04,
    bitModeMcuHost = 0x08,
    bitModeFastSerial = 0x10,
    bitModeCbusBitBang = 0x20,
    bitModeSyncFifo = 0x40
};

[[nodiscard]] constexpr bool isBitMode(std::uint8_t mode)
{
    constexpr std::array<std::uint8_t, 8> known{bitModeReset,       bitModeAsyncBitBang, bitModeMpsse,
                                                bitModeSyncBitBang, bitModeMcuHost,      bitModeFastSerial,
                                                bitModeCbusBitBang, bitModeSyncFifo};
    return std::find(known.begin(), known.end(), mode) != known.end();
}

enum FlowControl : std::uint16_t {
    flowNone = 0x0000,
    flowRtsCts = 0x0100,
    flowDtrDsr = 0x0200,
    flowXonXoff = 0x0400
};

[[nodiscard]] constexpr bool isFlowControl(std::uint16_t flow)
{
    return flow == flowNone || flow == flowRtsCts || flow == flowDtrDsr || flow == flowXonXoff;
}

/// Milliseconds after which a bridge sends what does not fill a transfer: 2 to 255.
inline constexpr std::uint8_t shortestLatency = 2;

[[nodiscard]] constexpr bool isLatency(std::uint8_t milliseconds)
{
    return milliseconds >= shortestLatency;
}

/// Bytes of one USB transfer: 64 to 65536 in steps of 64.
inline constexpr std::uint32_t largestTransfer = 65536;

[[nodiscard]] constexpr bool isTransferSize(std::uint32_t size)
{
    constexpr std::uint32_t step = 64;
    return size >= step && size <= largestTransfer && size % step == 0;
}

enum PurgeMask : std::uint32_t { purgeReceived = 1, purgeSent = 2, purgeBoth = purgeReceived | purgeSent };

[[nodiscard]] constexpr bool isPurgeMask(std::uint32_t mask)
{
    return mask != 0 && mask <= purgeBoth;
}

} // namespace d2xx
