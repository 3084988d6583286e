#pragma once

#include "imaging/recordedframe.h"
#include "imaging/recordingfacts.h"
#include "imaging/recordingfiles.h"
#include "imaging/stackfile.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

/// Writes one file or a part of it; returns an empty text or the line that says why it failed.
using FileJob = std::function<QString()>;

/// The files of a recording that hold all its frames (TIFF, NumPy's array, raw frames), and the description
/// beside each. One thread at a time calls; the jobs may run side by side. Blocks for the disk.
class RecordingStacks
{
public:
    /// Opens those that are among the forms; what was open is closed before. A line for each that failed.
    /// `wanted`: how many frames are to come, 0 or less when that is not known.
    [[nodiscard]] QStringList open(const RecordingFiles &files, const RecordingForms &forms,
                                   const RecordingFacts &facts, int wanted);

    /// Adds what is to be done for one frame, which must stay until it is done.
    void addJobs(const RecordedFrame &frame, std::vector<FileJob> &jobs);

    /// Closes all, and writes the description of each that holds a frame. A line for each file that failed.
    [[nodiscard]] QStringList close();

private:
    void convert(std::span<const double> currents);
    [[nodiscard]] QString writeDescription(const StackFile &stack) const;

    std::vector<std::unique_ptr<StackFile>> m_stacks;
    RecordingFacts m_facts;
    int m_wanted = 0;
    bool m_needsFloats = false;
    std::vector<qint64> m_times; ///< of the frames
    std::vector<float> m_floats; ///< of the frame that is being written
};
