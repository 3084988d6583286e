#pragma once

class PortManager;

/// The exchanges that start and end an acquisition. GUI thread; each blocks until the detector has answered,
/// for the time-out told at most. Only before the first start or while the receive loop is halted.
namespace Acquisition {

/// Asks for test pattern 1 to 5; true when the detector echoes it. 5 s.
[[nodiscard]] bool selectTestPattern(PortManager &link, int pattern);

/// Asks once whether the detector is ready. 5 s.
[[nodiscard]] bool isReady(PortManager &link);

/// Sends the start command; true when the detector echoes it. 5 s.
[[nodiscard]] bool start(PortManager &link);

/// Lets the receive thread go and asks for the first block. Does not block.
void beginReceiving(PortManager &link);

/// To be called on PortManager::stop(): slows the receive loop down and takes the detector's echo of the
/// halt, which is logged. 3.5 s.
void confirmHalt(PortManager &link);

} // namespace Acquisition
