#pragma once

#include "imaging/processimage.h"
#include "tools/recordingoptions.h"
#include "tools/runresult.h"

class QJsonObject;
class StandardOutput;

/// One recording of a command: the window's pipeline with its references, a line for each frame, and what has
/// become of it in the end. The log must exist.
class FrameRecording
{
public:
    FrameRecording(const RecordingOptions &options, StandardOutput &output)
        : m_options(options), m_output(output)
    {
    }

    [[nodiscard]] ProcessImage &pipeline() { return m_pipeline; }

    /// Takes the references that are asked for; to be called first.
    [[nodiscard]] RunResult calibrate();

    /// Begins to record, where a form is asked for. `frames`: how many are to come, 0 when that is not known.
    void begin(int frames, const RecordingFacts &facts);

    /// Prints the line of the frame that was processed last, `seconds` after the run's begin.
    void tell(int number, double seconds);

    /// Prints where it lies; tells of files that could not be written.
    [[nodiscard]] RunResult report();

    /// Adds what scripts want to know of it.
    void addTo(QJsonObject &summary) const;

private:
    const RecordingOptions &m_options;
    StandardOutput &m_output;
    ProcessImage m_pipeline;
};
