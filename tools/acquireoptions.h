#pragma once

#include "tools/commandline/commandline.h"

#include <QString>

/// What the command line of qv1k-acquire asks for.
struct AcquireOptions
{
    QString library;     ///< as the key `D2xxLibrary` of config.ini
    QString output;      ///< folder in which the recording's folder is made
    QString name;        ///< of the recording, see RecordingFiles::nameFor(); the current time when not given
    QString serial;      ///< of the detector; empty for the only one there is
    QString dark;        ///< file of the dark reference; empty for none
    QString bright;      ///< file of the bright reference; empty for none
    int frames = 1;      ///< 0 when the seconds count
    int seconds = 0;     ///< 0 when the frames count
    int testPattern = 0; ///< 1 to 5, 0 for the sensor's own picture
    int timeoutSeconds = 30;
    bool data = false;
    bool picture = true; ///< pictures are what is stored when nothing is chosen
    bool video = false;
    bool json = false; ///< a summary in place of the lines
    bool verbose = false;

    /// What was asked for; ends the process where that makes no sense.
    [[nodiscard]] static AcquireOptions of(const CommandLine &line);
};
