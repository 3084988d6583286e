#include "tools/recordingoptions.h"

#include <QDateTime>

RecordingOptions RecordingOptions::of(const CommandLine &line)
{
    RecordingOptions options;
    options.files = {
        line.value(QStringLiteral("output")),
        RecordingFiles::nameFor(line.value(QStringLiteral("name")), QDateTime::currentDateTime())};
    options.forms = {.data = line.isSet(QStringLiteral("data")),
                     .picture = line.isSet(QStringLiteral("picture")),
                     .video = line.isSet(QStringLiteral("video")),
                     .tiff = line.isSet(QStringLiteral("tiff")),
                     .npy = line.isSet(QStringLiteral("npy")),
                     .raw = line.isSet(QStringLiteral("raw"))};
    if (!options.forms.any() && line.value(QStringLiteral("publish")).isEmpty())
        options.forms.picture = true;
    options.dark = line.value(QStringLiteral("dark"));
    options.bright = line.value(QStringLiteral("bright"));
    return options;
}
