#pragma once

#include "streaming/framepublisher.h"
#include "tools/runresult.h"

#include <QByteArray>
#include <QObject>

#include <optional>

class DetectorSession;
class QJsonObject;

/// Sends the frames of a run to other machines while they come; does nothing where nobody asked for it. Main
/// thread.
class FrameStream : public QObject
{
    Q_OBJECT

public:
    /// An endpoint that is empty: nobody asked. Must be made before the pipeline, which hears of a frame
    /// later.
    FrameStream(const PublishOptions &options, DetectorSession &session);

    [[nodiscard]] bool isWanted() const { return m_publisher.has_value(); }

    /// Waits for the receivers that are to be there.
    [[nodiscard]] RunResult begin();
    /// What stands in the header of every frame.
    void setFacts(const QJsonObject &facts);
    /// Sends the frame that is through the pipeline; false when that failed, see failure().
    [[nodiscard]] bool send(std::span<const double> currents);
    /// Why the last frame could not be sent.
    [[nodiscard]] RunResult failure() const;
    /// Tells the receivers that this was all; after a run that failed without waiting for them long.
    [[nodiscard]] RunResult end(bool isWhole);

    /// Adds what scripts want to know of it.
    void addTo(QJsonObject &summary) const;

private:
    const DetectorSession &m_session;
    int m_timeoutMs;
    bool m_mustArrive;
    std::optional<FramePublisher> m_publisher;
    QByteArray m_raw; ///< the frame that the pipeline is at
};
