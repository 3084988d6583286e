// A driver library as somebody else would write it to the public D2XX interface: C names, plain types,
// nothing of this project. It lists two devices and opens the second.

#include <cstdint>
#include <cstring>

namespace {

struct Node
{
    std::uint32_t flags, type, id, locId;
    char serialNumber[16];
    char description[64];
    void *handle;
};

int device = 0;

} // namespace

extern "C" {

std::uint32_t FT_CreateDeviceInfoList(std::uint32_t *count)
{
    *count = 2;
    return 0;
}

std::uint32_t FT_GetDeviceInfoList(Node *nodes, std::uint32_t *count)
{
    for (std::uint32_t i = 0; i < *count; ++i) {
        std::memset(&nodes[i], 0, sizeof nodes[i]);
        std::memcpy(nodes[i].serialNumber, i == 0 ? "FIRST" : "SECOND", i == 0 ? 6 : 7);
    }
    return 0;
}

std::uint32_t FT_OpenEx(void *key, std::uint32_t flags, void **handle)
{
    if (flags != 1 || std::strcmp(static_cast<char *>(key), "SECOND") != 0)
        return 3;
    *handle = &device;
    return 0;
}

std::uint32_t FT_Close(void *)
{
    return 0;
}
std::uint32_t FT_ResetDevice(void *)
{
    return 0;
}
std::uint32_t FT_SetBitMode(void *, std::uint8_t, std::uint8_t)
{
    return 0;
}
std::uint32_t FT_SetLatencyTimer(void *, std::uint8_t)
{
    return 0;
}
std::uint32_t FT_SetUSBParameters(void *, std::uint32_t, std::uint32_t)
{
    return 0;
}
std::uint32_t FT_SetFlowControl(void *, std::uint16_t, std::uint8_t, std::uint8_t)
{
    return 0;
}
std::uint32_t FT_Purge(void *, std::uint32_t)
{
    return 0;
}
std::uint32_t FT_SetTimeouts(void *, std::uint32_t, std::uint32_t)
{
    return 0;
}
std::uint32_t FT_GetStatus(void *, std::uint32_t *rx, std::uint32_t *tx, std::uint32_t *events)
{
    *rx = *tx = *events = 0;
    return 0;
}
std::uint32_t FT_Read(void *, void *, std::uint32_t, std::uint32_t *count)
{
    *count = 0;
    return 0;
}
std::uint32_t FT_Write(void *, void *, std::uint32_t length, std::uint32_t *count)
{
    *count = length;
    return 0;
}
}
