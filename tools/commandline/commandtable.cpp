#include "tools/commandline/commandtable.h"

#include <array>

namespace CommandTable {

namespace {

constexpr Option library{
    "--library", "name",
    "Driver library: \"virtual\" (the virtual detector), \"ftdi\" or a path. Default: the "
    "maker's library.",
    nullptr};
constexpr Option serial{"--serial", "number", "Serial number of the detector. Needed when there are several.",
                        nullptr};
constexpr Option verbose{"--verbose", nullptr, "Repeat the log on standard error.", nullptr};
constexpr Option output{"--output", folder, "Folder for the recording. Default: the working folder.", "."};
constexpr Option name{"--name", "text", "Name of the recording. Default: the current time.", nullptr};
constexpr Option data{"--data", nullptr, "Store each frame's currents and grey levels as CSV.", nullptr};
constexpr Option picture{"--picture", nullptr,
                         "Store each frame as PNG. Done when none of the three is asked for.", nullptr};
constexpr Option video{"--video", nullptr, "Store all frames in one MP4 video.", nullptr};
constexpr Option timeout{"--timeout", "seconds",
                         "Seconds to wait for readiness, and for each frame. Default: 30.", "30"};

constexpr std::array acquireOptions{
    library,
    serial,
    Option{"--frames", "count", "Frames to take. Default: 1.", "1"},
    output,
    name,
    data,
    picture,
    video,
    Option{"--test-pattern,--pattern", "1-5", "Take one of the detector's five test patterns.", nullptr},
    timeout,
    verbose};

constexpr std::array commonRows{
    Option{"-h,-?,--help", nullptr, "Displays help on commandline options.", nullptr},
    Option{"--help-all", nullptr, "The same.", nullptr, false, true},
    Option{"-v,--version", nullptr, "Displays version information.", nullptr}};

constexpr Section statuses{
    "Exit status", "  0  all frames came and every file is complete\n"
                   "  1  they did not; standard error tells why in one line\n"
                   "  2  wrong arguments, or several detectors and no --serial\n"
                   "On SIGINT, SIGTERM, SIGHUP, and when nobody reads the output any more, the recording\n"
                   "ends, the detector is told to halt, and the process ends by that signal."};

constexpr std::array table{Command{"acquire",
                                   "take frames and record them",
                                   "Takes frames from a detector and records them, without a window.",
                                   acquireOptions,
                                   {},
                                   "qv1k-acquire --library virtual --frames 5 --output frames"}};

} // namespace

std::span<const Command> commands()
{
    return table;
}

std::span<const Option> commonOptions()
{
    return commonRows;
}

const Section &exitStatus()
{
    return statuses;
}

} // namespace CommandTable
