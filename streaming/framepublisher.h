#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <memory>
#include <span>

/// What a FramePublisher sends, and to whom.
struct PublishOptions
{
    static constexpr int keyLength = 40;

    /// Where receivers connect: a port of this machine's loopback ("5555"), or an endpoint of ZeroMQ that
    /// says the address ("tcp://*:5555"; not on Windows: "ipc:///run/frames").
    QString endpoint;
    bool mustArrive =
        false;         ///< nothing is lost: a frame waits for a receiver; else one that is slow loses frames
    bool raw = false;  ///< the bytes as they came over the cable instead of currents
    int receivers = 0; ///< the first frame waits until so many are there
    int timeoutMs = 30000; ///< a wait for receivers takes so long at most
    /// Secret key for encryption, 40 characters in Z85 as `zmq_curve_keypair` makes it; empty for none.
    /// Receivers must know its public half.
    QByteArray secretKey;
};

/// Sends frames to any number of receivers over ZeroMQ; docs/streaming.md tells the messages.
///
/// One thread. Frames that wait for a receiver are kept up to `queuedFrames` of them for each; the network
/// has a thread of its own.
class FramePublisher
{
public:
    static constexpr int queuedFrames = 8;

    /// Asked every 100 ms while receivers are waited for; false ends the wait.
    using MayWait = std::function<bool()>;

    /// Binds the endpoint. Where that fails, problem() tells why and nothing can be published.
    explicit FramePublisher(const PublishOptions &options, MayWait mayWait = {});
    /// What was not taken yet is lost; end() waits for it.
    ~FramePublisher();
    Q_DISABLE_COPY_MOVE(FramePublisher)

    /// Why the first call failed that did, in words for the user; empty while none has.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    /// Where receivers connect: with the port that the system chose where it was to choose
    /// ("tcp://127.0.0.1:*").
    [[nodiscard]] QString endpoint() const;

    /// What stands in the header of each frame beside its own: serial number, range, ...
    void setFacts(const QJsonObject &facts) { m_facts = facts; }

    /// Waits until `options.receivers` of them are there.
    [[nodiscard]] bool waitForReceivers();

    /// Sends one frame. `raw` as it came over the cable; `currents` in nA, row by row, are sent rounded to
    /// float. Where nothing may be lost it blocks while no receiver has room.
    [[nodiscard]] bool publish(const QByteArray &raw, std::span<const double> currents);

    /// Tells the receivers that this was all, and waits until they have gone, which they do when they have
    /// taken everything; those who may lose frames may lose the end too when that takes longer than
    /// `withinMs`. Nothing can be published afterwards.
    [[nodiscard]] bool end(int withinMs);

    /// Frames sent so far.
    [[nodiscard]] qint64 frames() const { return m_frames; }

private:
    struct Socket;

    bool waitFor(const std::function<bool(int)> &isDone, const QString &missed, int withinMs);
    bool fail(const QString &problem);

    PublishOptions m_options;
    MayWait m_mayWait;
    std::unique_ptr<Socket> m_socket;
    QJsonObject m_facts;
    QString m_problem;
    qint64 m_frames = 0;
};
