#pragma once

#include "device/d2xxlibrary.h"
#include "tools/acquireoptions.h"
#include "tools/framerecording.h"
#include "tools/framerun.h"
#include "tools/framestream.h"
#include "tools/progressline.h"

/// The frames of one recording, from a detector through the same pipeline as the window's into files.
class AcquisitionRun
{
public:
    AcquisitionRun(const AcquireOptions &options, const D2xxLibrary &library, DetectorSession &session,
                   StandardOutput &output);

    /// Runs whole and prints a line per frame. Receivers of what is published may take a signal's end 2 s
    /// longer than Commands tells.
    [[nodiscard]] RunResult run();

    /// Adds what scripts want to know of it.
    void addTo(QJsonObject &summary) const;

    [[nodiscard]] int frames() const { return m_frameRun.frames(); }

private:
    void tellReceivers();
    void begin();
    void onFrame(bool isLast);

    const AcquireOptions &m_options;
    const D2xxLibrary &m_library;
    DetectorSession &m_session;
    StandardOutput &m_output;
    ProgressLine m_progress;
    FrameStream m_stream; ///< before the pipeline, see there
    FrameRecording m_recording;
    FrameRun m_frameRun;
};
