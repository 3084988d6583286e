#include "ui/inspector/inspectionrunner.h"

#include <new>
#include <utility>

InspectionRunner::InspectionRunner(Source source, Clock clock, QObject *parent)
    : QObject(parent), m_source(std::move(source)), m_clock(std::move(clock))
{
    m_thread.setMaxThreadCount(1);
    m_thread.setThreadPriority(QThread::LowPriority); // the picture comes first
    m_due.setSingleShot(true);
    m_due.setTimerType(Qt::PreciseTimer);
    connect(&m_due, &QTimer::timeout, this, &InspectionRunner::beginWhenDue);
}

InspectionRunner::~InspectionRunner()
{
    m_thread.waitForDone();
}

void InspectionRunner::frameArrived()
{
    m_isFrameNew = true;
    beginWhenDue();
}

void InspectionRunner::ask(const Inquiry &inquiry)
{
    m_isInquiryNew = m_isInquiryNew || inquiry != m_inquiry;
    m_inquiry = inquiry;
    beginWhenDue();
}

void InspectionRunner::beginWhenDue()
{
    // The end of the one under way looks again.
    if (m_isBusy || (!m_isFrameNew && !(m_isInquiryNew && !m_frame.empty())))
        return;
    const qint64 wait = m_begunAt ? *m_begunAt + intervalMs - m_clock() : 0;
    if (wait <= 0)
        begin();
    else if (!m_due.isActive())
        m_due.start(static_cast<int>(wait));
}

void InspectionRunner::begin()
{
    if (std::exchange(m_isFrameNew, false)) {
        const std::span<const double> newest = m_source();
        if (newest.empty())
            return;
        m_previous.swap(m_frame);
        m_frame.assign(newest.begin(), newest.end());
    }
    m_isInquiryNew = false;
    m_isBusy = true;
    m_begunAt = m_clock();
    ++m_begun;
    m_thread.start([this, inquiry = m_inquiry] {
        std::optional<Inspection> result;
        try {
            result = Inspections::inspect(m_frame, m_previous, inquiry);
        } catch (const std::bad_alloc &) {
            result.reset();
        }
        QMetaObject::invokeMethod(
            this, [this, result = std::move(result)] { end(result); }, Qt::QueuedConnection);
    });
}

void InspectionRunner::end(const std::optional<Inspection> &result)
{
    m_isBusy = false;
    if (result)
        Q_EMIT inspected(*result);
    else
        Q_EMIT failed();
    beginWhenDue();
}
