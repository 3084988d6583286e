#pragma once

#include "imaging/recordingfiles.h"
#include "tools/commandline/commandline.h"

/// What is recorded of the frames that come, and how they are shown.
struct RecordingOptions
{
    RecordingFiles files; ///< the name is the current time when none was given
    RecordingForms forms; ///< pictures when nothing is chosen, and nothing published
    QString dark;         ///< file of the dark reference; empty for none
    QString bright;       ///< file of the bright reference; empty for none

    /// What was asked for; options that a command does not have count as not given.
    [[nodiscard]] static RecordingOptions of(const CommandLine &line);
};
