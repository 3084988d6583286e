#include "tools/acquireoptions.h"

#include "imaging/recordingfiles.h"

#include <QCommandLineParser>
#include <QDateTime>

#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void refuse(const QString &message)
{
    std::fprintf(stderr, "qv1k-acquire: %s (--help lists the options)\n", qUtf8Printable(message));
    std::exit(ExitStatus::wrongUsage);
}

/// The option's value as a number from `lowest` to `highest`.
int number(const QCommandLineParser &parser, const QString &option, int lowest, int highest)
{
    bool ok = false;
    const int value = parser.value(option).toInt(&ok);
    if (!ok || value < lowest || value > highest) {
        refuse(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"")
                   .arg(option)
                   .arg(lowest)
                   .arg(highest)
                   .arg(parser.value(option)));
    }
    return value;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Takes frames from a detector and records them, without a window.\n\n"
        "Exit status:\n"
        "  0  all frames came and every file is complete\n"
        "  1  they did not; standard error tells why in one line\n"
        "  2  wrong arguments, or several detectors and no --serial\n"
        "On SIGINT, SIGTERM, SIGHUP, and when nobody reads the output any more, the recording\n"
        "ends, the detector is told to halt, and the process ends by that signal."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("library"),
         QStringLiteral("Driver library: \"virtual\" (the virtual detector), \"ftdi\" or a path. "
                        "Default: the maker's library."),
         QStringLiteral("name")},
        {QStringLiteral("serial"),
         QStringLiteral("Serial number of the detector. Needed when there are several."),
         QStringLiteral("number")},
        {QStringLiteral("frames"), QStringLiteral("Frames to take. Default: 1."), QStringLiteral("count"),
         QStringLiteral("1")},
        {QStringLiteral("output"), QStringLiteral("Folder for the recording. Default: the working folder."),
         QStringLiteral("folder"), QStringLiteral(".")},
        {QStringLiteral("name"), QStringLiteral("Name of the recording. Default: the current time."),
         QStringLiteral("text")},
        {QStringLiteral("data"), QStringLiteral("Store each frame's currents and grey levels as CSV.")},
        {QStringLiteral("picture"),
         QStringLiteral("Store each frame as PNG. Done when none of the three is asked for.")},
        {QStringLiteral("video"), QStringLiteral("Store all frames in one MP4 video.")},
        {QStringLiteral("test-pattern"), QStringLiteral("Take one of the detector's five test patterns."),
         QStringLiteral("1-5")},
        {QStringLiteral("timeout"),
         QStringLiteral("Seconds to wait for readiness, and for each frame. Default: 30."),
         QStringLiteral("seconds"), QStringLiteral("30")},
        {QStringLiteral("verbose"), QStringLiteral("Repeat the log on standard error.")},
    });
}

} // namespace

AcquireOptions AcquireOptions::fromArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(arguments))
        refuse(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp();
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        refuse(QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().constFirst()));

    AcquireOptions options;
    options.library = parser.value(QStringLiteral("library"));
    options.output = parser.value(QStringLiteral("output"));
    options.name =
        RecordingFiles::nameFor(parser.value(QStringLiteral("name")), QDateTime::currentDateTime());
    options.serial = parser.value(QStringLiteral("serial"));
    options.frames = number(parser, QStringLiteral("frames"), 1, 1'000'000);
    options.timeoutSeconds = number(parser, QStringLiteral("timeout"), 1, 86'400);
    if (parser.isSet(QStringLiteral("test-pattern")))
        options.testPattern = number(parser, QStringLiteral("test-pattern"), 1, 5);
    options.data = parser.isSet(QStringLiteral("data"));
    options.video = parser.isSet(QStringLiteral("video"));
    options.picture = parser.isSet(QStringLiteral("picture")) || !(options.data || options.video);
    options.verbose = parser.isSet(QStringLiteral("verbose"));
    return options;
}
