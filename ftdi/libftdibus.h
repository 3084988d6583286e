#pragma once

#include "ftdi/usbport.h"

namespace ftdi {

/// The bridges that libusb finds and libftdi1 drives: vendor 0403, products 6010, 6011, 6014 and 6015.
///
/// A bridge with several channels is listed once for each, an A, B, C or D behind its serial number and
/// description. The system's serial port driver is detached while a bridge is open.
class LibFtdiBus : public UsbBus
{
public:
    /// Reads what the system noted when the bridge was plugged in: asks no bridge and needs no permission.
    std::optional<std::vector<BridgeInfo>> list() override;
    Refusal open(const std::string &serialNumber, std::unique_ptr<UsbPort> &port) override;
};

} // namespace ftdi
