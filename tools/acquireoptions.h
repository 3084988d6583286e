#pragma once

#include "tools/commandline/commandline.h"

#include <QString>

/// What the command line of qv1k-acquire asks for.
struct AcquireOptions
{
    QString library; ///< as the key `D2xxLibrary` of config.ini
    QString output;  ///< folder in which the recording's folder is made
    QString name;    ///< of the recording, see RecordingFiles::nameFor(); the current time when not given
    QString serial;  ///< of the detector; empty for the only one there is
    int frames = 1;
    int testPattern = 0; ///< 1 to 5, 0 for the sensor's own picture
    int timeoutSeconds = 30;
    bool data = false;
    bool picture = true; ///< pictures are what is stored when nothing is chosen
    bool video = false;
    bool verbose = false;

    /// What was asked for; ends the process where that makes no sense.
    [[nodiscard]] static AcquireOptions of(const CommandLine &line);
};
