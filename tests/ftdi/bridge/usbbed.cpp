#include "tests/ftdi/bridge/usbbed.h"

#include "tests/ftdi/bridge/descriptors.h"
#include "tests/ftdi/bridge/usbfs.h"

namespace {

using Texts = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

std::vector<gchar *> pointersTo(const Texts &texts)
{
    std::vector<gchar *> pointers;
    for (const std::string &text : texts)
        pointers.push_back(const_cast<gchar *>(text.c_str())); // only read
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

struct UsbBed::System
{
    UMockdevTestbed *bed = umockdev_testbed_new();
    std::vector<std::string> hubs = std::vector<std::string>(10); ///< the computer's own, then by port

    std::string root() const
    {
        gchar *path = umockdev_testbed_get_root_dir(bed);
        std::string text = path;
        g_free(path);
        return text;
    }

    /// Makes a device of sysfs, and tells nobody yet. Attributes and properties are names and values in turn.
    std::string add(const std::string &name, const char *parent, const Texts &attributes,
                    const Texts &properties, Bytes descriptors) const
    {
        gchar *path = umockdev_testbed_add_devicev(
            bed, "usb", name.c_str(), parent, pointersTo(attributes).data(), pointersTo(properties).data());
        std::string text = path;
        g_free(path);
        umockdev_testbed_set_attribute_binary(bed, text.c_str(), "descriptors", descriptors.data(),
                                              static_cast<gint>(descriptors.size()));
        return text;
    }

    std::string addHub(const std::string &name, const char *parent, int address) const
    {
        const std::string number = std::to_string(address);
        const std::string padded = std::string(3 - number.size(), '0') + number;
        return add(name, parent,
                   {"busnum", "1", "devnum", number, "speed", "480", "bConfigurationValue", "1", "dev",
                    "189:" + std::to_string(address - 1), "maxchild", "9", "idVendor", "1d6b", "idProduct",
                    "0002"},
                   {"DEVTYPE", "usb_device", "BUSNUM", "001", "DEVNUM", padded, "DEVNAME",
                    "/dev/bus/usb/001/" + padded, "PRODUCT", "1d6b/2/510"},
                   descriptorsOfHub());
    }
};

struct UsbBed::Plugged
{
    Plugged(std::unique_ptr<Lines> lines, const std::string &root, std::string name)
        : bridge(std::move(lines), root + name), usbfs(bridge), node(std::move(name))
    {
    }

    EmulatedBridge bridge;
    Usbfs usbfs;
    std::string node; ///< as programs name it
    std::string sysfs;
};

bool UsbBed::isAtHand()
{
    return umockdev_in_mock_environment() != FALSE;
}

UsbBed::UsbBed() : m_system(std::make_unique<System>()), m_plugged(10)
{
    m_system->hubs[0] = m_system->addHub("usb1", nullptr, m_lastAddress);
}

UsbBed::~UsbBed() // NOLINT(bugprone-exception-escape): as in the header
{
    for (int port = 1; port < 10; ++port)
        unplug(port);
    for (const auto &bridge : m_pulled)
        umockdev_testbed_detach_ioctl(m_system->bed, bridge->node.c_str(), nullptr);
    g_object_unref(m_system->bed);
}

void UsbBed::plugInHub(int port)
{
    m_system->hubs[static_cast<std::size_t>(port)] =
        m_system->addHub("1-" + std::to_string(port), m_system->hubs[0].c_str(), ++m_lastAddress);
}

EmulatedBridge &UsbBed::plugIn(int port, const Identity &identity, std::unique_ptr<Lines> lines)
{
    const int address = ++m_lastAddress;
    const std::string number = std::to_string(address);
    const std::string node = "/dev/bus/usb/001/" + std::string(3 - number.size(), '0') + number;
    auto &place = m_plugged[static_cast<std::size_t>(port)];
    place = std::make_unique<Plugged>(std::move(lines), m_system->root(), node);
    place->bridge.onChip([&](EmulatedChip &chip) {
        chip.setPacketSize(identity.isHighSpeed ? EmulatedChip::highSpeedPacket
                                                : EmulatedChip::fullSpeedPacket);
    });
    umockdev_testbed_attach_ioctl(m_system->bed, node.c_str(), place->usbfs.handler(), nullptr);

    place->sysfs = m_system->add(
        (identity.hub == 0 ? "1-" : "1-" + std::to_string(identity.hub) + '.') + std::to_string(port),
        m_system->hubs.at(static_cast<std::size_t>(identity.hub)).c_str(),
        {"busnum", "1", "devnum", number, "dev", "189:" + std::to_string(address - 1), "speed",
         identity.isHighSpeed ? "480" : "12", "bConfigurationValue", "1", "serial", identity.serialNumber,
         "product", identity.product},
        {"DEVTYPE", "usb_device", "DEVNAME", node, "BUSNUM", "001", "DEVNUM", number, "PRODUCT",
         identity.productId == 0x6014 ? "403/6014/900" : "403/6015/1000"},
        descriptorsOf(identity));
    if (!m_isSilent)
        umockdev_testbed_uevent(m_system->bed, place->sysfs.c_str(), "add");
    return place->bridge;
}

void UsbBed::unplug(int port)
{
    auto &plugged = m_plugged[static_cast<std::size_t>(port)];
    if (!plugged)
        return;
    UMockdevTestbed *bed = m_system->bed;
    plugged->bridge.unplug();
    if (!m_isSilent)
        umockdev_testbed_uevent(bed, plugged->sysfs.c_str(), "remove");
    umockdev_testbed_remove_device(bed, plugged->sysfs.c_str());
    m_pulled.push_back(std::move(plugged)); // who still has it open is answered that it is gone
}

std::string UsbBed::nodeOf(int port) const
{
    return m_plugged.at(static_cast<std::size_t>(port))->bridge.node();
}
