#pragma once

#include "imaging/recordingfiles.h"

/// Sees to it that a finished recording is on the disk and not only on its way there: without that, a loss of
/// power takes back files that were whole.
namespace DiskFlush {

/// Flushes the files of a recording of `frames` frames, its folder, and the folder in which that lies. A file
/// that is not there is left out; one that cannot be flushed leaves a line in the log. Blocks for the disk,
/// for seconds where it is slow. Any thread.
void flush(const RecordingFiles &files, const RecordingForms &forms, int frames);

} // namespace DiskFlush
