#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

class PortManager;

/// What the program says to the detector, each with its time-out and how its reply is judged. GUI thread;
/// each blocks until the detector has answered, for the time told at most. See device/exchange.h.
namespace Conversation {

/// Battery charge in percent; none when there was no answer at all, or another command's. 0.5 s.
[[nodiscard]] std::optional<int> batteryLevel(PortManager &link);

/// Asks for test pattern 1 to 5; true when the detector echoes it. 5 s. Silence makes it doubtful whether the
/// detector streams; silence again, and it is told to halt.
[[nodiscard]] bool selectTestPattern(PortManager &link, int pattern);

/// Asks once whether the detector is ready. 5 s.
[[nodiscard]] bool isReady(PortManager &link);

/// Asks until the detector is ready. After each time that it is not, `rest` is to take a second and to say
/// whether there is to be another time; false when it says no.
///
/// A detector that was left streaming answers no query: after three queries in a row without a single byte,
/// or after the first when a start or a halt was not confirmed, it is told to halt, once, and what arrives
/// within 0.5 s is dropped. A reply that was left over from another command counts as "not ready", once.
[[nodiscard]] bool waitUntilReady(PortManager &link, const std::function<bool()> &rest);

/// Sends the start command; true when the detector echoes it. 5 s.
[[nodiscard]] bool start(PortManager &link);

/// Tells a detector to halt that may be streaming though nobody receives, and drops what arrives within 0.5
/// s; nothing without such a doubt (PortManager::mayBeStreaming()), or when the device is lost.
void haltIfStreaming(PortManager &link);

/// Lets the receive thread go and asks for the first block. Does not block.
void beginReceiving(PortManager &link);

/// To be called on PortManager::stop(): slows the receive loop down and takes the detector's echo of the
/// halt, which is logged. 3.5 s. Without it the detector may be streaming all the same.
void confirmHalt(PortManager &link);

/// Sends a command whose acknowledgement is awaited but not judged. 2 s.
void command(PortManager &link, const QByteArray &frame);

/// Sends a parameter frame; true when the detector acknowledges it. 2 s.
[[nodiscard]] bool download(PortManager &link, const QByteArray &frame);

/// Replies as hexadecimal text, or what of them arrived; device/protocol/readback.h reads them. 5 s.
[[nodiscard]] QByteArray readVersion(PortManager &link);
[[nodiscard]] QByteArray readParameters(PortManager &link);
[[nodiscard]] QByteArray readEeprom(PortManager &link);

} // namespace Conversation
