#include "tools/acquireoptions.h"

#include "imaging/recordingfiles.h"

#include <QDateTime>

AcquireOptions AcquireOptions::of(const CommandLine &line)
{
    AcquireOptions options;
    options.library = line.value(QStringLiteral("library"));
    options.output = line.value(QStringLiteral("output"));
    options.name = RecordingFiles::nameFor(line.value(QStringLiteral("name")), QDateTime::currentDateTime());
    options.serial = line.value(QStringLiteral("serial"));
    options.dark = line.value(QStringLiteral("dark"));
    options.bright = line.value(QStringLiteral("bright"));
    if (line.isSet(QStringLiteral("seconds"))) {
        if (line.isSet(QStringLiteral("frames")))
            CommandLine::refuse(QStringLiteral("--frames and --seconds exclude each other"));
        options.seconds = line.number(QStringLiteral("seconds"), 1, 1'000'000);
        options.frames = 0;
    } else {
        options.frames = line.number(QStringLiteral("frames"), 1, 1'000'000);
    }
    options.timeoutSeconds = line.number(QStringLiteral("timeout"), 1, 86'400);
    if (line.isSet(QStringLiteral("test-pattern")))
        options.testPattern = line.number(QStringLiteral("test-pattern"), 1, 5);
    options.data = line.isSet(QStringLiteral("data"));
    options.video = line.isSet(QStringLiteral("video"));
    options.picture = line.isSet(QStringLiteral("picture")) || !(options.data || options.video);
    options.json = line.isSet(QStringLiteral("json"));
    options.verbose = line.isSet(QStringLiteral("verbose"));
    return options;
}
