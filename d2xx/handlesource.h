#pragma once

#include "d2xx/types.h"

namespace d2xx {

/// Gives handles that never come again, so that a provider recognises an old one without looking into it.
/// Providers begin at numbers of their own, so that neither takes the other's for its own. Not thread-safe.
class HandleSource
{
public:
    /// The first handle is the one after `origin`.
    explicit HandleSource(std::uintptr_t origin) : m_last(origin) {}

    [[nodiscard]] Handle next()
    {
        return reinterpret_cast<Handle>(++m_last); // NOLINT(performance-no-int-to-ptr): a mere token
    }

private:
    std::uintptr_t m_last;
};

} // namespace d2xx
