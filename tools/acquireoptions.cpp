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
    options.frames = line.number(QStringLiteral("frames"), 1, 1'000'000);
    options.timeoutSeconds = line.number(QStringLiteral("timeout"), 1, 86'400);
    if (line.isSet(QStringLiteral("test-pattern")))
        options.testPattern = line.number(QStringLiteral("test-pattern"), 1, 5);
    options.data = line.isSet(QStringLiteral("data"));
    options.video = line.isSet(QStringLiteral("video"));
    options.picture = line.isSet(QStringLiteral("picture")) || !(options.data || options.video);
    options.verbose = line.isSet(QStringLiteral("verbose"));
    return options;
}
