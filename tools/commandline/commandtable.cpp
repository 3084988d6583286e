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
constexpr Option picture{"--picture", nullptr, "Store each frame as PNG. Done when no form is asked for.",
                         nullptr};
constexpr Option video{"--video", nullptr, "Store all frames in one MP4 video.", nullptr};
constexpr Option tiff{"--tiff", nullptr,
                      "Store the currents of all frames in one TIFF file of 32-bit floats.", nullptr};
constexpr Option npy{"--npy", nullptr, "Store them in one NumPy array of 32-bit floats.", nullptr};
constexpr Option raw{"--raw", nullptr,
                     "Store all frames as they came over the cable, with checksums, for replay.", nullptr};
constexpr Option dark{"--dark", file,
                      "Dark reference: pictures and grey levels are calibrated. Without --bright that is 255 "
                      "nA.",
                      nullptr};
constexpr Option bright{"--bright", file, "Bright reference, the same. Without --dark that is 0 nA.",
                        nullptr};
constexpr Option json{"--json", nullptr, "Print one JSON object in one line, and nothing else, for scripts.",
                      nullptr};
constexpr Option timeout{"--timeout", "seconds",
                         "Seconds to wait for readiness, and for each frame. Default: 30.", "30"};

constexpr std::array acquireOptions{
    library,
    serial,
    Option{"--frames", "count", "Frames to take. Default: 1.", "1"},
    Option{
        "--seconds", "time",
        "Take the frames of so many seconds, in place of a number of frames. The one under way then is the "
        "last.",
        nullptr},
    output,
    name,
    data,
    picture,
    video,
    tiff,
    npy,
    raw,
    Option{"--test-pattern,--pattern", "1-5", "Take one of the detector's five test patterns.", nullptr},
    timeout,
    dark,
    bright,
    Option{"--publish", "endpoint",
           "Send each frame to other programs over ZeroMQ: a port of this machine alone (\"5555\"), or an "
           "endpoint "
           "(\"tcp://*:5555\"). Nothing is recorded then unless it is asked for.",
           nullptr},
    Option{"--must-arrive", nullptr,
           "Receivers share the frames, and no frame is lost: the detector is made to wait for them. Else "
           "each gets "
           "every frame, as far as it is fast enough.",
           nullptr},
    Option{"--receivers", "count", "Wait until so many are there before the detector is started.", nullptr},
    Option{"--publish-raw", nullptr, "Send frames as they came over the cable, in place of currents in nA.",
           nullptr},
    Option{"--publish-key", file, "Encrypt what is sent with the secret key in that file.", nullptr},
    json,
    verbose};

constexpr std::array calibrateOptions{
    Option{"which", "dark|bright", "The reference to take: of the dark or of the evenly lit sensor.", nullptr,
           true},
    Option{"--to", file, "File of the reference, as --dark and --bright of acquire take it.", nullptr, true},
    Option{"--frames", "count", "Frames whose mean it is. Default: 1.", "1"},
    library,
    serial,
    timeout,
    json,
    verbose};

constexpr std::array replayOptions{
    Option{"recording", file, "Raw frames that acquire --raw has stored: NAME.raw.", nullptr, true},
    output,
    name,
    data,
    picture,
    video,
    tiff,
    npy,
    raw,
    dark,
    bright,
    json,
    verbose};

constexpr std::array listOptions{library, json, verbose};

constexpr std::array infoOptions{library, serial, json, verbose};

constexpr std::array commonRows{
    Option{"-h,-?,--help", nullptr, "Displays help on commandline options.", nullptr},
    Option{"--help-all", nullptr, "The same.", nullptr, false, true},
    Option{"-v,--version", nullptr, "Displays version information.", nullptr}};

constexpr std::array setOptions{
    library,
    serial,
    Option{"--range", "150|50|10|1", "Current range in nA: sends its timing and the ADC word.", nullptr},
    Option{"--von", "volts", "Turns the transistors on, -15 to 15 V. The four voltages go together.",
           nullptr},
    Option{"--voff", "volts", "Turns the transistors off, -15 to 15 V.", nullptr},
    Option{"--vss", "volts", "Bias on the cathode of the photodiodes, -15 to 15 V.", nullptr},
    Option{"--vcom", "volts", "Reserved, -15 to 15 V.", nullptr},
    json,
    verbose};

constexpr Section statuses{
    "Exit status", "  0  all frames came and every file is complete\n"
                   "  1  they did not; standard error tells why in one line\n"
                   "  2  wrong arguments, or several detectors and no --serial\n"
                   "On SIGINT, SIGTERM, SIGHUP, and when nobody reads the output any more, the recording\n"
                   "ends, the detector is told to halt, and the process ends by that signal."};

constexpr Section statusesOfOthers{
    "Exit status",
    "  0  done\n"
    "  1  not done; standard error tells why in one line\n"
    "  2  wrong arguments, or several detectors and no --serial\n"
    "On SIGINT, SIGTERM and SIGHUP nothing more is sent, and the process ends by that signal."};

constexpr std::array acquireSections{Section{
    "Keys of --json", "  complete         true when all went as it should: exit status 0\n"
                      "  problem          why not, as on standard error; else left out\n"
                      "  library          file of the driver library\n"
                      "  simulated        true on the virtual detector\n"
                      "  serial           serial number of the detector\n"
                      "  frames, wanted   frames that came, and how many should have (not with --seconds)\n"
                      "  seconds          from the first request to the last frame\n"
                      "  framesPerSecond  the one by the other\n"
                      "  folder           where the recording lies\n"
                      "  failedFiles      files that could not be written\n"
                      "  published        frames that were sent, with --publish"}};

constexpr std::array calibrateSections{
    Section{"Keys of --json", "  complete, problem, library, simulated, serial  as of acquire\n"
                              "  frames, wanted, seconds, framesPerSecond       the same\n"
                              "  file                                           where the reference lies"}};

constexpr std::array listSections{
    Section{"Keys of --json",
            "  complete, problem, library, simulated  as of acquire\n"
            "  detectors                              one object each: serial, description, simulated,\n"
            "                                         detector (false: another bridge), inUse"}};

constexpr std::array infoSections{
    Section{"Keys of --json", "  complete, problem, library, simulated, serial  as of acquire\n"
                              "  version              of the firmware, as text\n"
                              "  battery              charge in percent\n"
                              "  mode                 \"QV 1K\" or \"QV 256\"\n"
                              "  adc                  operation, dataFormat, testMode as text; picocoulombs\n"
                              "  von, voff, vss, vcom volts, of the sixteen in voltages\n"
                              "  voltages, timing, eeprom  16, 18 and 32 numbers in the order of the cable"}};

constexpr std::array replaySections{
    Section{"Keys of --json", "  complete, problem, frames, wanted, folder, failedFiles  as of acquire\n"
                              "  seconds, framesPerSecond  as they came: from the first frame to the last\n"
                              "  source                    the file that was replayed"}};

constexpr std::array setSections{
    Section{"Keys of --json",
            "  complete, problem, library, simulated, serial  as of acquire\n"
            "  set              what was acknowledged, in this order: \"timing\", \"adc\", \"voltages\""}};

constexpr std::array table{
    Command{"acquire", "take frames and record them",
            "Takes frames from a detector and records them, without a window.", acquireOptions,
            acquireSections, "qv1k-acquire --library virtual --frames 5 --output frames"},
    Command{
        "calibrate", "take the dark or the bright reference",
        "Takes the dark or the bright reference of a calibration: the mean current of each pixel, as CSV of "
        "1024 lines of 1024 numbers in nA. Set the light before. A copy lies in Logs/calib, as the window's.",
        calibrateOptions, calibrateSections, "qv1k-acquire calibrate dark --frames 16 --to dark.csv"},
    Command{
        "list", "tell which detectors are there",
        "Tells which detectors are attached: serial number, description, whether it is simulated or another "
        "bridge, and whether it is in use, which is tried by opening it for a moment.",
        listOptions, listSections, "qv1k-acquire list --json"},
    Command{"info", "read a detector's version, battery charge, parameters and EEPROM",
            "Reads back what the detector tells of itself: version, battery charge, mode, ADC, voltages (V), "
            "timing (ns) and the working copy of the EEPROM.",
            infoOptions, infoSections, "qv1k-acquire info --serial QV1K"},
    Command{"replay", "put recorded raw frames through the pipeline again",
            "Puts raw frames that were recorded through the same pipeline again, without a detector: the "
            "currents, times and settings are those of the recording. Each "
            "frame is held against its checksum first.",
            replayOptions, replaySections,
            "qv1k-acquire replay frames/sample1/sample1.raw --data --output again"},
    Command{
        "set", "set current range and voltages",
        "Sets what the window's settings page sets, in its order: the timing of the range, the ADC word, all "
        "sixteen voltages; each when the one before was acknowledged, and only what is asked for. The other "
        "twelve voltages and the other choices of the ADC are what config.ini in the working folder holds, 0 "
        "V where it holds nothing. config.ini is not written.",
        setOptions, setSections, "qv1k-acquire set --range 10 --von 15 --voff -15 --vss 0.5 --vcom -10"}};

} // namespace

std::span<const Command> commands()
{
    return table;
}

std::span<const Option> commonOptions()
{
    return commonRows;
}

const Section &exitStatus(const Command &command)
{
    return command.name == table.front().name ? statuses : statusesOfOthers;
}

} // namespace CommandTable
