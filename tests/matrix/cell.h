#pragma once

#include "tests/matrix/fault.h"

#include <cstdint>
#include <string>
#include <vector>

/// What the operator does.
enum class Act {
    Connect,
    Battery, ///< the timer asks for the charge
    Download,
    Command, ///< a button of the engineering dialog
    Play,
    PlayPattern, ///< with a test image chosen
    Watch,       ///< pictures come in, and nobody does anything
    Stop,
    Record,
    Calibrate,
    Disconnect,
    DisconnectSampling, ///< the same button, which refuses then
    Leave,              ///< the close button, and yes
    PullIdle,           ///< the detector's cable
    PullSampling,
    PlugIn, ///< something, while nothing runs
    PlugInSampling,
    RemoveOther, ///< another bridge, while nothing runs
    RemoveOtherSampling,
    Acquire ///< qv1k-acquire
};

/// A row of the matrix.
struct Row
{
    const char *name;
    Act act;
    std::uint16_t command = 0;                ///< class and code of what is written first; 0 for nothing
    int waitMs = 0;                           ///< how long its reply is waited for
    const char *button = nullptr;             ///< of the engineering dialog
    std::int64_t imageBytes = 0;              ///< so many come in before the fault
    std::vector<const char *> arguments = {}; ///< of qv1k-acquire
};

/// How the window stands there afterwards, or how the tool ended.
enum class State {
    Disconnected, ///< "Connect", and nothing runs
    Idle,         ///< "Disconnect", and nothing runs
    Sampling,     ///< pictures come
    Silent,       ///< it samples, and the frame rate's sign says that nothing comes
    Closed,       ///< the window is gone
    Succeeded,    ///< qv1k-acquire, with status 0
    Failed        ///< the same, with status 1
};

/// Lines of the log, to be combined.
enum LogLine : std::uint32_t {
    Nothing = 0,
    TimedOut = 1U << 0U,
    ReadFailed = 1U << 1U,
    Lost = 1U << 2U,
    DeviceClosed = 1U << 3U,
    StreamReadFailed = 1U << 4U,
    Interrupted = 1U << 5U,
    Resumed = 1U << 6U,
    StopOverdue = 1U << 7U,
    Halted = 1U << 8U,
    OpenFailed = 1U << 9U,
    FileCut = 1U << 10U,
    FileNotOpened = 1U << 11U,
    RecordingEnded = 1U << 12U,
    RecordingCut = 1U << 13U,
    Surplus = 1U << 14U
};

/// A line as it stands in the log, and what it says.
struct LogText
{
    LogLine line;
    const char *text;
    const char *meaning;
};
[[nodiscard]] const std::vector<LogText> &logTexts();

/// The dialog that stands there while the detector is not ready, and the press on its button.
inline constexpr const char *waitShown = "Waiting for the detector";
inline constexpr const char *waitCancelled = "Waiting for the detector: Cancel";

/// The system's own words in the line of qv1k-acquire.
inline constexpr const char *systemsWords = "...";

/// What has to come of a cell besides that the next normal flow works.
struct Expectation
{
    State state = State::Idle;
    std::uint32_t log = Nothing; ///< these lines and no other of logTexts()
    int seconds = 0;   ///< what the program's own waits add up to at most; a slow machine adds its share
    std::string boxes; ///< the texts of the message boxes, one after the other with " | " between them;
                       ///< before them what is shown of the wait for readiness; of qv1k-acquire the line on
                       ///< standard error, up to the system's own words
    std::string page;  ///< what the save page says of the recording; empty where it is not looked at
    std::uint32_t perhaps = Nothing; ///< these lines too, or not: which of two threads is first decides
};

/// One fault in a group of rows.
struct Entry
{
    Fault fault;
    Expectation expected;
};

[[nodiscard]] inline Entry cell(Fault fault, State state, std::uint32_t log, int seconds,
                                const char *boxes = "", const char *page = "")
{
    return {fault, {state, log, seconds, boxes, page, Nothing}};
}

/// Faults that make no sense in a group of rows, or that another group shows.
struct Senseless
{
    std::vector<Fault> faults;
    const char *why;
};

/// Rows of which the same is expected. Every column stands in one of the two lists.
struct Group
{
    const char *title;
    std::vector<Row> rows;
    std::vector<Entry> entries;
    std::vector<Senseless> senseless;
};

struct Cell
{
    Row row;
    Fault fault;
    Expectation expected;

    /// As its test is named: "set adc x reply late".
    [[nodiscard]] std::string name() const;
};

/// The whole table, in the order of the document.
[[nodiscard]] const std::vector<Group> &allGroups();

/// What of it is tested.
[[nodiscard]] std::vector<Cell> allCells();
/// Whether the program waits for two seconds and more in a cell.
enum class Pace { Prompt, Waiting };

/// Those of the window, and those of qv1k-acquire.
[[nodiscard]] std::vector<Cell> windowCells(Pace pace);
[[nodiscard]] std::vector<Cell> toolCells(Pace pace);
