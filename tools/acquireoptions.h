#pragma once

#include "streaming/framepublisher.h"
#include "tools/framerun.h"
#include "tools/recordingoptions.h"

/// What the command line of qv1k-acquire asks of an acquisition.
struct AcquireOptions
{
    QString library; ///< as the key `D2xxLibrary` of config.ini
    FrameRun::Wanted wanted;
    RecordingOptions recording;
    PublishOptions publish; ///< its endpoint is empty when nothing is to be published
    bool json = false;      ///< a summary in place of the lines
    bool verbose = false;

    /// What was asked for; ends the process where that makes no sense.
    [[nodiscard]] static AcquireOptions of(const CommandLine &line);
};
