#pragma once

#include "d2xx/types.h"

namespace d2xx {

/// What `call` returns. No exception crosses the C interface: where memory is short or the system fails it is
/// OtherError.
template <typename Call>
[[nodiscard]] Status guarded(Call call) noexcept
{
    try {
        return call();
    } catch (...) {
        return Status::OtherError;
    }
}

} // namespace d2xx
