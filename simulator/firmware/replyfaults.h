#pragma once

#include "simulator/firmware/commandparser.h"
#include "simulator/settings/faults.h"

#include <QByteArray>

#include <optional>

namespace simulator {

/// A reply as it leaves the detector.
struct Reply
{
    QByteArray bytes;
    Milliseconds delay{0};
};

/// The reply to `command` after the reply faults; none when it goes missing. Counts down the replies that
/// still suffer.
[[nodiscard]] std::optional<Reply> withFaults(QByteArray reply, const Command &command, Faults &faults);

} // namespace simulator
