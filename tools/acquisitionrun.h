#pragma once

#include "imaging/processimage.h"
#include "tools/acquireoptions.h"
#include "tools/framerun.h"
#include "tools/progressline.h"

struct D2xxLibrary;
class PortManager;
class QJsonObject;

/// The frames of one recording, from a detector through the same pipeline as the window's into files.
class AcquisitionRun
{
public:
    AcquisitionRun(const AcquireOptions &options, const D2xxLibrary &library, DetectorSession &session,
                   StandardOutput &output);

    /// Takes the references that are asked for; to be called first.
    [[nodiscard]] RunResult calibrate();

    /// Runs whole and prints a line per frame.
    [[nodiscard]] RunResult run();

    /// Adds what scripts want to know of it.
    void addTo(QJsonObject &summary) const;

    [[nodiscard]] int frames() const { return m_frameRun.frames(); }

private:
    void begin();
    void onFrame(bool isLast);
    RunResult report();

    const AcquireOptions &m_options;
    StandardOutput &m_output;
    ProgressLine m_progress;
    ProcessImage m_pipeline;
    FrameRun m_frameRun;
    const PortManager &m_link;
};
