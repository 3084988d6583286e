#pragma once

#include "tests/ftdi/bridge/emulatedbridge.h"

#include <umockdev.h>

#include <map>
#include <memory>

/// Answers the requests that programs make at the node of a bridge, also programs of other processes.
/// Requests are handled on umockdev's own thread.
class Usbfs
{
public:
    explicit Usbfs(EmulatedBridge &bridge);
    Usbfs(const Usbfs &) = delete;
    Usbfs &operator=(const Usbfs &) = delete;
    ~Usbfs();

    [[nodiscard]] UMockdevIoctlBase *handler() const { return m_handler; }

private:
    /// What stands in a client's memory while its transfer is under way.
    using Memory = std::shared_ptr<UMockdevIoctlData>;

    static gboolean onRequest(UMockdevIoctlBase *handler, UMockdevIoctlClient *client, Usbfs *self);
    static void onVanished(UMockdevIoctlBase *handler, UMockdevIoctlClient *client, Usbfs *self);
    int answer(UMockdevIoctlClient *client, unsigned long request, UMockdevIoctlData *arg);
    int submit(UMockdevIoctlClient *client, UMockdevIoctlData *arg);
    int reap(UMockdevIoctlClient *client, UMockdevIoctlData *arg);
    void letClientsWait() const;

    EmulatedBridge &m_bridge;
    UMockdevIoctlBase *m_handler;
    std::map<std::pair<const void *, std::uint64_t>, Memory> m_memory; // umockdev's thread alone
};
