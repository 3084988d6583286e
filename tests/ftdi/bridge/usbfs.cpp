#include "tests/ftdi/bridge/usbfs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace {

constexpr std::uint32_t capabilities = USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_BULK_CONTINUATION |
                                       USBDEVFS_CAP_NO_PACKET_SIZE_LIM | USBDEVFS_CAP_BULK_SCATTER_GATHER |
                                       USBDEVFS_CAP_REAP_AFTER_DISCONNECT;

using Data = std::shared_ptr<UMockdevIoctlData>;

/// What the pointer at `offset` points to; null when it cannot be read.
Data behind(UMockdevIoctlData *data, std::size_t offset, std::size_t length)
{
    return {umockdev_ioctl_data_resolve(data, offset, length, nullptr), [](UMockdevIoctlData *d) {
                if (d != nullptr)
                    umockdev_ioctl_data_unref(d);
            }};
}

template <typename Value>
Value valueOf(UMockdevIoctlData *data)
{
    Value value;
    std::memcpy(&value, data->data, sizeof(value));
    return value;
}

template <typename Value>
void put(UMockdevIoctlData *data, const Value &value)
{
    std::memcpy(data->data, &value, sizeof(value));
}

} // namespace

Usbfs::Usbfs(EmulatedBridge &bridge) : m_bridge(bridge), m_handler(umockdev_ioctl_base_new())
{
    g_signal_connect(m_handler, "handle-ioctl", G_CALLBACK(&Usbfs::onRequest), this);
    g_signal_connect(m_handler, "client-vanished", G_CALLBACK(&Usbfs::onVanished), this);
}

Usbfs::~Usbfs()
{
    g_signal_handlers_disconnect_by_data(m_handler, this);
    g_object_unref(m_handler);
}

gboolean Usbfs::onRequest(UMockdevIoctlBase * /*handler*/, UMockdevIoctlClient *client, Usbfs *self)
{
    UMockdevIoctlData *arg = umockdev_ioctl_client_get_arg(client);
    const int error = self->answer(client, umockdev_ioctl_client_get_request(client), arg);
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
    return TRUE;
}

void Usbfs::onVanished(UMockdevIoctlBase * /*handler*/, UMockdevIoctlClient *client, Usbfs *self)
{
    self->m_bridge.forget(client);
    std::erase_if(self->m_memory, [=](const auto &entry) { return entry.first.first == client; });
}

int Usbfs::answer(UMockdevIoctlClient *client, unsigned long request, UMockdevIoctlData *arg)
{
    const auto number = [arg] {
        return valueOf<unsigned int>(behind(arg, 0, sizeof(unsigned int)).get());
    };
    switch (request) {
    case USBDEVFS_GET_CAPABILITIES: // the first request, and who makes it waits for the answer
        letClientsWait();
        put(behind(arg, 0, sizeof(capabilities)).get(), capabilities);
        return 0;
    case USBDEVFS_GETDRIVER:
    case USBDEVFS_IOCTL: // what the library asks the system's own driver, and there is none
        return ENODATA;
    case USBDEVFS_CLAIMINTERFACE:
        return m_bridge.claim(client);
    case USBDEVFS_RELEASEINTERFACE:
        return m_bridge.release(client);
    case USBDEVFS_SUBMITURB:
        return submit(client, arg);
    case USBDEVFS_REAPURBNDELAY:
        return reap(client, arg);
    case USBDEVFS_DISCARDURB:
        return m_bridge.discard(client, valueOf<std::uint64_t>(arg));
    case USBDEVFS_RESETEP:
    case USBDEVFS_CLEAR_HALT:
        return m_bridge.clearHalt(static_cast<std::uint8_t>(number()));
    default:
        return ENOTTY;
    }
}

int Usbfs::submit(UMockdevIoctlClient *client, UMockdevIoctlData *arg)
{
    const Data data = behind(arg, 0, sizeof(usbdevfs_urb));
    if (!data)
        return EFAULT;
    const auto theirs = valueOf<usbdevfs_urb>(data.get());
    EmulatedBridge::Urb urb;
    urb.client = client;
    urb.address = data->client_addr;
    urb.endpoint = theirs.endpoint;
    urb.length = static_cast<std::size_t>(theirs.buffer_length);
    if (theirs.endpoint != EmulatedBridge::inEndpoint) {
        const Data bytes = behind(data.get(), offsetof(usbdevfs_urb, buffer), urb.length);
        if (!bytes)
            return EFAULT;
        urb.bytes.assign(bytes->data, bytes->data + bytes->data_len);
    }
    m_memory[{client, urb.address}] = data;
    return m_bridge.submit(std::move(urb));
}

int Usbfs::reap(UMockdevIoctlClient *client, UMockdevIoctlData *arg)
{
    EmulatedBridge::Urb urb;
    if (const int error = m_bridge.reap(client, urb); error != 0)
        return error;
    const auto entry = m_memory.extract({client, urb.address});
    const Data pointer = behind(arg, 0, sizeof(void *));
    if (entry.empty() || !pointer)
        return EFAULT;
    UMockdevIoctlData *data = entry.mapped().get();
    auto theirs = valueOf<usbdevfs_urb>(data);
    theirs.status = urb.status;
    theirs.actual_length = static_cast<int>(urb.done);
    put(data, theirs);
    umockdev_ioctl_data_set_ptr(pointer.get(), 0, data);
    if (urb.endpoint == EmulatedBridge::inEndpoint && urb.done > 0) {
        const Data bytes = behind(data, offsetof(usbdevfs_urb, buffer), urb.done);
        if (bytes)
            std::copy_n(urb.bytes.begin(), urb.done, bytes->data);
    }
    return 0;
}

/// Whoever has opened the node in this process hears of an unplug. Clients of other processes do not.
void Usbfs::letClientsWait() const
{
    struct stat node = {};
    if (stat(m_bridge.node().c_str(), &node) != 0)
        return;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        struct stat open = {};
        if (stat(entry.path().c_str(), &open) == 0 && open.st_dev == node.st_dev &&
            open.st_ino == node.st_ino)
            m_bridge.letWaitOn(std::stoi(entry.path().filename()));
    }
}
