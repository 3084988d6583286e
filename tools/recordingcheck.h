#pragma once

#include "imaging/recordingfiles.h"

#include <QString>

/// Looks whether the files of a recording are there and whole.
namespace RecordingCheck {

/// What there should be.
struct Recording
{
    RecordingFiles files; ///< a relative root is taken from the working folder
    int frames = 0;
    RecordingForms forms;
};

/// Reads every file: CSV files must have 1024 lines of 1024 numbers, pictures 1024 x 1024 pixels, the video
/// as many frames as were recorded, where the video library keeps a count,
/// raw frames must agree with their checksums, TIFF and NumPy files be as long as their frames. Returns the
/// first fault found in one line, or an empty text. Blocks for the time it takes to read and decode
/// everything.
[[nodiscard]] QString check(const Recording &recording);

} // namespace RecordingCheck
