#pragma once

#include <QString>
#include <QStringList>

/// What the command line of qv1k-acquire asks for.
struct AcquireOptions
{
    QString library; ///< as the key `D2xxLibrary` of config.ini
    QString output;  ///< folder in which the recording's folder is made
    QString name;    ///< of the recording, see RecordingFiles::nameFor(); the current time when not given
    int frames = 1;
    int testPattern = 0; ///< 1 to 5, 0 for the sensor's own picture
    int timeoutSeconds = 30;
    bool data = false;
    bool picture = true; ///< pictures are what is stored when nothing is chosen
    bool video = false;
    bool verbose = false;

    /// Reads the arguments. Prints help, version or what is wrong with them and ends the process where there
    /// is nothing to run: status 0 for help and version, 2 for wrong arguments.
    [[nodiscard]] static AcquireOptions fromArguments(const QStringList &arguments);
};
