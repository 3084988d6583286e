#include "tools/acquireoptions.h"

AcquireOptions AcquireOptions::of(const CommandLine &line)
{
    AcquireOptions options;
    options.library = line.value(QStringLiteral("library"));
    options.recording = RecordingOptions::of(line);
    FrameRun::Wanted &wanted = options.wanted;
    wanted.serial = line.value(QStringLiteral("serial"));
    if (line.isSet(QStringLiteral("seconds"))) {
        if (line.isSet(QStringLiteral("frames")))
            CommandLine::refuse(QStringLiteral("--frames and --seconds exclude each other"));
        wanted.seconds = line.number(QStringLiteral("seconds"), 1, 1'000'000);
        wanted.frames = 0;
    } else {
        wanted.frames = line.number(QStringLiteral("frames"), 1, 1'000'000);
    }
    wanted.timeoutSeconds = line.number(QStringLiteral("timeout"), 1, 86'400);
    if (line.isSet(QStringLiteral("test-pattern")))
        wanted.testPattern = line.number(QStringLiteral("test-pattern"), 1, 5);
    options.json = line.isSet(QStringLiteral("json"));
    options.verbose = line.isSet(QStringLiteral("verbose"));
    return options;
}
