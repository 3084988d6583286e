#pragma once

#include <QtGlobal>

#include <optional>

/// Judges how long the stream of an acquisition has been silent. Knows no clock: times are handed in, in
/// milliseconds of one clock. Not thread-safe.
class StreamWatch
{
public:
    /// The longest frame takes 2.2 s.
    static constexpr qint64 silenceMs = 5000;
    static constexpr qint64 lossMs = 1000;

    enum class Event {
        None,
        Interrupted, ///< no byte for silenceMs though a block is owed; told once
        Resumed,     ///< the first byte after it
        StopOverdue, ///< no byte for silenceMs since the request to stop
    };

    /// An acquisition begins, or the request for a block that was held back goes out: a block is owed.
    void blockRequested(qint64 now) { m_quietSince = now; }
    void begin(qint64 now);

    /// Bytes arrived.
    [[nodiscard]] Event arrived(qint64 now);
    /// None did. With `isHeldBack` no block is owed.
    [[nodiscard]] Event quiet(qint64 now, bool isHeldBack, bool stopRequested);

    /// The status call failed, or not. True when it has failed at every call for lossMs.
    [[nodiscard]] bool isLost(qint64 now, bool statusFailed);

private:
    qint64 m_quietSince = 0;
    std::optional<qint64> m_stoppingSince;
    std::optional<qint64> m_failingSince;
    bool m_interrupted = false;
};
