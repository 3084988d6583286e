#pragma once

#include <libusb.h>

#include <span>

namespace ftdi {

/// The devices on the USB, as long as this lives.
class DeviceList
{
public:
    explicit DeviceList(libusb_context *context) : m_count(libusb_get_device_list(context, &m_devices)) {}
    DeviceList(const DeviceList &) = delete;
    DeviceList &operator=(const DeviceList &) = delete;
    ~DeviceList()
    {
        if (isValid())
            libusb_free_device_list(m_devices, 1);
    }

    [[nodiscard]] bool isValid() const { return m_count >= 0; }
    [[nodiscard]] std::span<libusb_device *const> devices() const
    {
        return {m_devices, isValid() ? static_cast<std::size_t>(m_count) : 0};
    }

private:
    libusb_device **m_devices = nullptr;
    ssize_t m_count;
};

} // namespace ftdi
