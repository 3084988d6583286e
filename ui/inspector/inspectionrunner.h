#pragma once

#include "ui/inspector/inspection.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// Inspects frames on a thread of its own, ten times a second at most: what comes meanwhile waits, and of
/// frames only the newest. Frames are copied only when one is about to be inspected. GUI thread.
class InspectionRunner : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 intervalMs = 100;

    /// The frame that came last, empty before the first; called on the GUI thread.
    using Source = std::function<std::span<const double>()>;
    /// Milliseconds that never go back.
    using Clock = std::function<qint64()>;

    InspectionRunner(Source source, Clock clock, QObject *parent = nullptr);
    /// Waits for the inspection under way, some 50 ms at most.
    ~InspectionRunner() override;
    Q_DISABLE_COPY_MOVE(InspectionRunner)

    /// The source has a new frame.
    void frameArrived();
    /// What is asked of the frame that is there and of those to come.
    void ask(const Inquiry &inquiry);

    /// Inspections that were begun.
    [[nodiscard]] int begun() const { return m_begun; }

Q_SIGNALS:
    void inspected(const Inspection &inspection);
    /// For want of memory.
    void failed();

private:
    void beginWhenDue();
    void begin();
    void end(const std::optional<Inspection> &result);

    Source m_source;
    Clock m_clock;
    QTimer m_due;
    QThreadPool m_thread;
    Inquiry m_inquiry;
    std::optional<qint64> m_begunAt; ///< of the last
    int m_begun = 0;
    bool m_isFrameNew = false;
    bool m_isInquiryNew = false;
    bool m_isBusy = false;          ///< the thread has the two frames
    std::vector<double> m_frame;    ///< inspected last
    std::vector<double> m_previous; ///< inspected before that
};
