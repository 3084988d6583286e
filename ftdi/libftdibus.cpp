#include "ftdi/libftdibus.h"

#include "d2xx/families.h"
#include "ftdi/devicelist.h"
#include "ftdi/libftdiport.h"
#include "ftdi/refusals.h"

#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>

namespace ftdi {

namespace {

constexpr std::size_t longestSerialNumber = sizeof(d2xx::DeviceRecord::serialNumber) - 1;

constexpr std::array families{d2xx::family2232H, d2xx::family4232H, d2xx::family232H, d2xx::familyX};

/// A channel of a bridge that is plugged in.
struct Found
{
    BridgeInfo info;
    libusb_device *device;
    ftdi_interface channel;
};

/// What the system noted about a device: /sys/bus/usb/devices/<bus>-<port>.<port>/<attribute>.
std::string noted(libusb_device *device, const char *attribute)
{
    std::array<std::uint8_t, 7> ports{};
    const int depth = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
    std::string path = "/sys/bus/usb/devices/" + std::to_string(libusb_get_bus_number(device));
    for (int i = 0; i < depth; ++i)
        path += (i == 0 ? '-' : '.') + std::to_string(ports[static_cast<std::size_t>(i)]);
    std::ifstream file(path + '/' + attribute);
    std::string text;
    std::getline(file, text);
    return text;
}

void addChannels(std::vector<Found> &found, libusb_device *device, const d2xx::Family &family)
{
    BridgeInfo info;
    info.type = family.type;
    info.id = d2xx::recordId(family);
    info.isHighSpeed = libusb_get_device_speed(device) == LIBUSB_SPEED_HIGH;
    info.locationId = std::uint32_t{libusb_get_bus_number(device)} << 16U |
                      std::uint32_t{libusb_get_device_address(device)} << 8U;
    const std::string serialNumber = noted(device, "serial");
    const std::string description = noted(device, "product");
    for (int i = 0; i < family.channels; ++i) {
        const std::string letter = family.channels > 1 ? std::string(1, static_cast<char>('A' + i)) : "";
        info.serialNumber = serialNumber.substr(0, longestSerialNumber - letter.size()) + letter;
        info.description = letter.empty() ? description : description + ' ' + letter;
        ++info.locationId;
        found.push_back({info, device, static_cast<ftdi_interface>(INTERFACE_A + i)});
    }
}

std::vector<Found> findBridges(const DeviceList &list)
{
    std::vector<Found> found;
    for (libusb_device *device : list.devices()) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(device, &descriptor) != LIBUSB_SUCCESS ||
            descriptor.idVendor != d2xx::vendor)
            continue;
        const auto family = std::find_if(families.begin(), families.end(), [&](const d2xx::Family &f) {
            return f.product == descriptor.idProduct;
        });
        if (family != families.end())
            addChannels(found, device, *family);
    }
    return found;
}

std::string nodeOf(libusb_device *device)
{
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/dev/bus/usb/%03d/%03d", libusb_get_bus_number(device),
                  libusb_get_device_address(device));
    return path.data();
}

/// libftdi1 tells not apart why a device cannot be opened.
int tryNode(libusb_device *device)
{
    libusb_device_handle *handle = nullptr;
    const int result = libusb_open(device, &handle);
    if (result == LIBUSB_SUCCESS)
        libusb_close(handle);
    return result;
}

/// What the numbers of ftdi_usb_open_dev() mean.
Refusal refusalBy(int opening, const ftdi_context &context, const Found &bridge)
{
    constexpr int notOpened = -3;
    constexpr int notConfigured = -4;
    constexpr int notClaimed = -5;
    constexpr int notReset = -6;
    constexpr int noBaudRate = -7;
    switch (opening) {
    case notOpened:
        return notPluggedIn(bridge.info.serialNumber);
    case notConfigured:
    case notClaimed:
        return heldElsewhere(nodeOf(bridge.device));
    case notReset:
    case noBaudRate:
        return chipIsSilent();
    default:
        return {Status::OtherError, context.error_str != nullptr ? context.error_str : ""};
    }
}

Refusal openFound(FtdiContext context, const Found &bridge, std::unique_ptr<UsbPort> &port)
{
    const int access = tryNode(bridge.device);
    if (access == LIBUSB_ERROR_ACCESS)
        return notPermitted(nodeOf(bridge.device));
    if (access == LIBUSB_ERROR_NO_DEVICE)
        return notPluggedIn(bridge.info.serialNumber);
    context->module_detach_mode = AUTO_DETACH_REATACH_SIO_MODULE;
    context->usb_read_timeout = LibFtdiPort::requestTimeoutMs;
    context->usb_write_timeout = LibFtdiPort::requestTimeoutMs;
    ftdi_set_interface(context.get(), bridge.channel);
    const int result = ftdi_usb_open_dev(context.get(), bridge.device);
    if (result != 0)
        return refusalBy(result, *context, bridge);
    auto opened = std::make_unique<LibFtdiPort>(std::move(context));
    if (!opened->tidyUp())
        return chipIsSilent();
    port = std::move(opened);
    return {};
}

} // namespace

std::optional<std::vector<BridgeInfo>> LibFtdiBus::list()
{
    const FtdiContext context(ftdi_new());
    if (!context)
        return {};
    const DeviceList list(context->usb_ctx);
    if (!list.isValid())
        return {};
    std::vector<BridgeInfo> infos;
    for (const Found &bridge : findBridges(list))
        infos.push_back(bridge.info);
    return infos;
}

Refusal LibFtdiBus::open(const std::string &serialNumber, std::unique_ptr<UsbPort> &port)
{
    FtdiContext context(ftdi_new());
    if (!context)
        return unusableUsb();
    const DeviceList list(context->usb_ctx);
    if (!list.isValid())
        return unusableUsb();
    for (const Found &bridge : findBridges(list)) {
        if (bridge.info.serialNumber == serialNumber)
            return openFound(std::move(context), bridge, port);
    }
    return notPluggedIn(serialNumber);
}

} // namespace ftdi
