#include "ftdi/refusals.h"

#include "ftdi/holders.h"

namespace ftdi {

Refusal unusableUsb()
{
    return {Status::OtherError, "The system's USB cannot be used."};
}

Refusal notPluggedIn(const std::string &serialNumber)
{
    return {Status::DeviceNotFound, "No bridge with the serial number " + serialNumber + " is plugged in."};
}

Refusal notPermitted(const std::string &node)
{
    return {Status::DeviceNotOpened, "This user may not access the bridge (" + node +
                                         "). Copy " QV1K_UDEV_RULES
                                         " to /etc/udev/rules.d and plug the detector in again."};
}

Refusal heldElsewhere(const std::string &node)
{
    std::string holders;
    for (const Holder &holder : holdersOf(node))
        holders +=
            (holders.empty() ? "" : ", ") + holder.name + " (process " + std::to_string(holder.process) + ')';
    if (holders.empty())
        holders = "which one, this user may not see";
    return {Status::DeviceNotOpened, "Another program holds the bridge (" + node + "): " + holders + '.'};
}

Refusal chipIsSilent()
{
    return {Status::IoError, "The bridge does not answer. Plug the detector out and in again."};
}

} // namespace ftdi
