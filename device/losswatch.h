#pragma once

#include <QtGlobal>

#include <optional>

/// Judges when it is told that the bridge lost bytes, or that a frame got too many: at once, and then every
/// tellMs while it goes on. Knows no clock: times are handed in, in milliseconds of one clock. Not
/// thread-safe.
class LossWatch
{
public:
    static constexpr qint64 tellMs = 10'000;

    /// An acquisition begins: what the bridge has counted by now is no news.
    void begin(quint32 count)
    {
        m_atStart = count;
        m_told = count;
        m_toldAt.reset();
    }

    /// The bridge's count; how many losses of this acquisition are to be told now, if any.
    [[nodiscard]] std::optional<quint32> counted(quint32 count, qint64 now)
    {
        if (count == m_told || (m_toldAt && now - *m_toldAt < tellMs))
            return std::nullopt;
        m_told = count;
        m_toldAt = now;
        return count - m_atStart;
    }

private:
    quint32 m_atStart = 0;
    quint32 m_told = 0;
    std::optional<qint64> m_toldAt;
};
