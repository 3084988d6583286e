#pragma once

#include "device/protocol/commandframes.h"

#include <QByteArray>

class PortManager;

/// A frame out, its reply back: the one way in which the program talks with the detector. What must hold for
/// every exchange belongs here. GUI thread; only before the first start or while the receive loop is halted,
/// since a loop that runs would take the reply.
namespace Exchange {

/// What is waited for.
struct Wait
{
    int timeoutMs;
    int bytes = AckFrame::commandBytes;
};

/// Sends `frame` with one write and returns its reply as PortManager::wait_for_read() does: upper-case
/// hexadecimal text, or what of it arrived. Blocks for the time-out at most.
///
/// After a reply that was not exactly what was waited for, or that can be told to be another command's, the
/// rest of it or the true one may still come, and must not be taken for the answer to this frame: what waits
/// is dropped before the frame goes out.
QByteArray run(PortManager &link, const QByteArray &frame, Wait wait);

/// The same for a frame that the receive thread has sent already.
[[nodiscard]] QByteArray reply(PortManager &link, const QByteArray &frame, Wait wait);

} // namespace Exchange
