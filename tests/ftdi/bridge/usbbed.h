#pragma once

#include "tests/ftdi/bridge/emulatedbridge.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A computer's USB with emulated bridges, for unmodified libraries: nodes, sysfs and the events of udev.
/// The process must have been started with umockdev's library loaded first. One at a time.
class UsbBed
{
public:
    /// What a bridge's descriptors tell.
    struct Identity
    {
        std::string serialNumber = "QV1K";
        std::string product = "QV1K detector";
        std::uint16_t productId = 0x6014;
        std::uint16_t packetSize = 512; ///< of its endpoints
        bool isHighSpeed = true;
        int hub = 0; ///< behind the hub at that port of the computer's; 0: at the computer's own
    };

    UsbBed();
    UsbBed(const UsbBed &) = delete;
    UsbBed &operator=(const UsbBed &) = delete;
    ~UsbBed(); // NOLINT(bugprone-exception-escape): memory that runs out ends the test

    /// For while there is one: false when umockdev's library was not loaded first, and nothing of this works.
    [[nodiscard]] static bool isAtHand();

    /// Plugs a hub in at that port, 1 to 9, for good.
    void plugInHub(int port);
    /// Plugs one in at that port of its hub, 1 to 9, and tells it. It stays until it is pulled. No two at
    /// ports of the same number.
    EmulatedBridge &plugIn(int port, const Identity &identity, std::unique_ptr<Lines> lines);
    void unplug(int port);
    /// From now on nobody is told, as where no udev runs.
    void setSilent(bool isSilent) { m_isSilent = isSilent; }
    /// Where its node really lies.
    [[nodiscard]] std::string nodeOf(int port) const;

private:
    struct Plugged;
    struct System;

    std::unique_ptr<System> m_system;
    std::vector<std::unique_ptr<Plugged>> m_plugged; ///< by port
    std::vector<std::unique_ptr<Plugged>> m_pulled;
    int m_lastAddress = 1;
    bool m_isSilent = false;
};
