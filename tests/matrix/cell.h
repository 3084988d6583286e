#pragma once

#include "tests/matrix/fault.h"

#include <cstdint>
#include <string>
#include <vector>

/// What the operator does.
enum class Act { Download, Command };

/// A row of the matrix.
struct Row
{
    const char *name;
    Act act;
    std::uint16_t command = 0;    ///< class and code of what is written first; 0 for nothing
    int waitMs = 0;               ///< how long its reply is waited for
    const char *button = nullptr; ///< of the engineering dialog
};

/// How the window stands there afterwards, or how the tool ended.
enum class State {
    Disconnected, ///< "Connect", and nothing runs
    Idle,         ///< "Disconnect", and nothing runs
    Sampling,     ///< pictures come
    Silent,       ///< it samples, and the frame rate's sign says that nothing comes
    Closed        ///< the window is gone
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
    FileFailed = 1U << 10U
};

/// A line as it stands in the log, and what it says.
struct LogText
{
    LogLine line;
    const char *text;
    const char *meaning;
};
[[nodiscard]] const std::vector<LogText> &logTexts();

/// What has to come of a cell besides that the next normal flow works.
struct Expectation
{
    State state = State::Idle;
    std::uint32_t log = Nothing; ///< these lines and no other of logTexts()
    int seconds = 0;   ///< what the program's own waits add up to at most; a slow machine adds its share
    std::string boxes; ///< the texts of the message boxes, one after the other with " | " between them
};

/// One fault in a group of rows: what is expected, or why it makes no sense there.
struct Entry
{
    Fault fault;
    Expectation expected;
    std::string whyNot; ///< empty where there is something to test
};

[[nodiscard]] inline Entry cell(Fault fault, State state, std::uint32_t log, int seconds,
                                const char *boxes = "")
{
    return {fault, {state, log, seconds, boxes}, {}};
}

[[nodiscard]] inline Entry noCell(Fault fault, const char *why)
{
    return {fault, {}, why};
}

/// Rows of which the same is expected.
struct Group
{
    const char *title;
    std::vector<Row> rows;
    std::vector<Entry> entries;
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
