#pragma once

#include "device/portmanager.h"

/// What of the link's state nobody but its two threads looks at.
class LinkInspector
{
public:
    static bool isOpen(const PortManager &link) { return link.m_state.m_handle != nullptr; }
    /// Whether the receive thread reads: there is one, and it is not halted.
    static bool receives(const PortManager &link)
    {
        return link.m_receiveThread != nullptr && !link.m_state.m_halted;
    }
    static bool isToStop(const PortManager &link) { return link.m_state.m_stopRequested; }
};
