#include "tools/acquireoptions.h"

#include <QFile>

namespace {

/// Where and how frames are to be published. A key is read here, so that a wrong one is told before anything
/// is opened.
PublishOptions publishOptions(const CommandLine &line, int timeoutSeconds)
{
    PublishOptions options;
    options.endpoint = line.value(QStringLiteral("publish"));
    options.mustArrive = line.isSet(QStringLiteral("must-arrive"));
    options.raw = line.isSet(QStringLiteral("publish-raw"));
    options.timeoutMs = timeoutSeconds * 1000;
    if (line.isSet(QStringLiteral("receivers")))
        options.receivers = line.number(QStringLiteral("receivers"), 1, 1'000);
    const QString key = line.value(QStringLiteral("publish-key"));
    if (options.endpoint.isEmpty() &&
        (options.mustArrive || options.raw || options.receivers > 0 || !key.isEmpty()))
        CommandLine::refuse(
            QStringLiteral("--must-arrive, --receivers, --publish-raw and --publish-key go with --publish"));
    if (key.isEmpty())
        return options;
    QFile file(key);
    if (!file.open(QIODevice::ReadOnly))
        CommandLine::refuse(QStringLiteral("the key %1 cannot be read: %2").arg(key, file.errorString()));
    options.secretKey = file.readAll().trimmed();
    if (options.secretKey.size() != PublishOptions::keyLength)
        CommandLine::refuse(QStringLiteral("%1 holds no key of 40 characters").arg(key));
    return options;
}

} // namespace

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
    options.publish = publishOptions(line, wanted.timeoutSeconds);
    options.json = line.isSet(QStringLiteral("json"));
    options.verbose = line.isSet(QStringLiteral("verbose"));
    return options;
}
