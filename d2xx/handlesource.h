#pragma once

#include "d2xx/types.h"

namespace d2xx {

/// Gives handles that never come again, so that a provider recognises an old one without looking into it.
/// Not thread-safe.
class HandleSource
{
public:
    [[nodiscard]] Handle next()
    {
        return reinterpret_cast<Handle>(++m_last); // NOLINT(performance-no-int-to-ptr): a mere token
    }

private:
    std::uintptr_t m_last = 0x46540000;
};

} // namespace d2xx
