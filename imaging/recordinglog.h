#pragma once

#include "imaging/recordingfiles.h"

/// What became of a recording that has ended.
struct RecordingResult
{
    int stored = 0; ///< frames
    int wanted = 0; ///< frames
    int failed = 0; ///< files that are missing or not whole

    [[nodiscard]] bool complete() const { return stored > 0 && stored == wanted; }
};

/// The lines in the log that tell of a recording; none where no log runs.
namespace RecordingLog {

/// `provenance`: where its frames come from, as the log says it of the driver library; may be empty.
void begun(const RecordingFiles &files, const RecordingForms &forms, int wanted, const QString &provenance);
void ended(const RecordingFiles &files, const RecordingResult &result);

} // namespace RecordingLog
