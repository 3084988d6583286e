#pragma once

#include <QString>

#include <utility>

/// Tells of something that fails in a row without flooding the log: the first ones each, from then on their
/// number every ten seconds. Knows no clock: times are handed in, in milliseconds of one clock. Not
/// thread-safe.
class RepeatedFailures
{
public:
    static constexpr int toldEach = 10;
    static constexpr qint64 intervalMs = 10000;

    /// `text` is what the log says of one failure, and what stands before their number.
    explicit RepeatedFailures(QString text) : m_text(std::move(text)) {}

    /// One more failed. Returns the line for the log, empty when none is due.
    [[nodiscard]] QString failed(qint64 now);
    /// One succeeded. Returns the line that tells of failures not told yet, empty when there are none.
    [[nodiscard]] QString succeeded();

    /// So many that the reader had better pause after each.
    [[nodiscard]] bool arePersistent() const { return m_inRow > toldEach; }

private:
    [[nodiscard]] QString tellNumber();

    QString m_text;
    int m_inRow = 0;
    int m_untold = 0;
    qint64 m_lastTold = 0;
};
