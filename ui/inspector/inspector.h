#pragma once

#include "ui/inspector/inspectionrunner.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class Inspector;
}

/// How frames fare that are not looked at themselves.
struct FrameCounts
{
    qint64 received = 0; ///< since the acquisition began
    qint64 waiting = 0;  ///< of those
    int recorded = 0;
    int wanted = 0;     ///< of the recording
    quint32 losses = 0; ///< how often the bridge lost data
};

/// A window that tells what the frame that was shown last is like: how its currents spread and how they run
/// through the picked pixel, how noisy they are, and which pixels stand out. Of the whole frame, or of a
/// region. Works on a thread of its own. GUI thread only.
class Inspector : public QDialog
{
    Q_OBJECT

public:
    /// Asks `counts` each time it shows something.
    Inspector(InspectionRunner::Source source, InspectionRunner::Clock clock,
              std::function<FrameCounts()> counts, QWidget *parent = nullptr);
    /// Waits for what is being worked out, some 50 ms at most.
    ~Inspector() override;

    /// The source has a new frame.
    void frameArrived() { m_runner.frameArrived(); }
    /// The pixel whose current is read out; outside the frame, the nearest in it.
    void pick(int row, int column);
    /// What the figures are about, within the frame: x counts columns, y rows.
    void chooseRegion(const QRect &region);

    [[nodiscard]] const InspectionRunner &runner() const { return m_runner; }

private:
    void ask();
    void showFigures(const Inspection &inspection);
    void showCurrents(const Inspection &inspection);
    void showNoise(const Inspection &inspection);
    void showOutliers(const FrameStatistics::Outliers &outliers);
    void showPlots(const Inspection &inspection);
    void showCounts();

    const std::unique_ptr<Ui::Inspector> ui;
    std::function<FrameCounts()> m_counts;
    Inquiry m_inquiry;
    InspectionRunner m_runner;
};
