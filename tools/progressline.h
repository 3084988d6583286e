#pragma once

#include <QString>

/// How far a run is, in one line on standard error that is written over again and again: on a terminal
/// alone, nothing into a file or pipe. Main thread.
class ProgressLine
{
public:
    /// How far it is.
    struct State
    {
        int frames = 0;
        int wantedFrames = 0;  ///< 0 when the seconds count
        double seconds = 0.0;  ///< since the first block request
        int wantedSeconds = 0; ///< 0 when the frames count
        qint64 waiting = 0;    ///< frames that came and are not through yet
    };

    /// Shows something only when `isWanted`.
    explicit ProgressLine(bool isWanted);
    /// Clears it.
    ~ProgressLine();
    Q_DISABLE_COPY_MOVE(ProgressLine)

    void show(const State &state);
    /// To be called before anything else goes to the terminal.
    void clear();

    /// "12 of 50 frames  6.33 frames/s  26.5 MB/s  0 waiting  6 s left".
    [[nodiscard]] static QString textOf(const State &state);

private:
    void write(const QString &text);

    const bool m_isShown;
    qsizetype m_shown = 0; ///< characters that stand there
};
