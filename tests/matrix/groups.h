#pragma once

#include "tests/matrix/cell.h"

// The parts of the table, each in a file of its own.

[[nodiscard]] Group connectGroup();
[[nodiscard]] Group disconnectGroup();
[[nodiscard]] Group pullGroup();
[[nodiscard]] Group plugGroup();
[[nodiscard]] Group plugSamplingGroup();
[[nodiscard]] Group removeOtherGroup();
[[nodiscard]] Group batteryGroup();
[[nodiscard]] Group downloadGroup();
[[nodiscard]] Group commandGroup();
[[nodiscard]] Group otherCommandsGroup();
[[nodiscard]] Group readbackGroup();
[[nodiscard]] Group otherReadbacksGroup();
[[nodiscard]] Group patternGroup();
[[nodiscard]] Group readinessGroup();
[[nodiscard]] Group startGroup();
[[nodiscard]] Group streamGroup();
[[nodiscard]] Group calibrationGroup();
[[nodiscard]] Group recordingGroup();
[[nodiscard]] Group refusedDisconnectGroup();
[[nodiscard]] Group stopGroup();
[[nodiscard]] Group leaveGroup();
[[nodiscard]] Group acquireOpenGroup();
[[nodiscard]] Group acquirePatternGroup();
[[nodiscard]] Group acquireReadinessGroup();
[[nodiscard]] Group acquireStartGroup();
[[nodiscard]] Group acquireStreamGroup();
[[nodiscard]] Group acquireStopGroup();
[[nodiscard]] Group acquireDiskGroup();

/// Why the columns of the stream make no sense in an exchange.
inline constexpr const char *noStream = "nothing streams then";
/// Why those of the disk make none.
inline constexpr const char *noRecording = "nothing is recorded";
/// Why those of open boxes and dialogs make none.
inline constexpr const char *noPress = "they are modal: nobody can press it";

/// Why the list of what is attached plays no part.
inline constexpr const char *noList = "nobody asks for the list";
/// Why faults of an exchange play none.
inline constexpr const char *noExchange = "nothing is asked of the detector";

/// Of a detector that is gone, the log tells this: while nothing was asked of it, and while something was.
inline constexpr std::uint32_t lost = Lost | DeviceClosed;
inline constexpr std::uint32_t lostWaiting = TimedOut | lost;

/// The boxes of closing the window and of a folder that was not chosen.
inline constexpr const char *exitQuestion = "Are you sure you want to exit？";
inline constexpr const char *noPath = "Please select a valid path";

/// The senseless columns of an exchange that a button starts: those of the stream, the disk and the dialogs.
[[nodiscard]] inline std::vector<Senseless> senselessForButtons(std::vector<Senseless> more)
{
    using enum Fault;
    more.push_back({{Stall, BlockLost, BlockDoubled, BlockTorn, OddPieces}, noStream});
    more.push_back({{DiskFull, DiskReadOnly, DiskGone}, noRecording});
    more.push_back({{ListFails}, noList});
    more.push_back({{MessageBox, FileDialog, EngineeringDialog}, noPress});
    return more;
}
