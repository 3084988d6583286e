#pragma once

#include <QString>

/// Standard output, line by line, whose reader may go away: that ends nothing by itself while this object
/// lives, so that the run can end in good order. One at a time.
class StandardOutput
{
public:
    StandardOutput();
    ~StandardOutput();
    Q_DISABLE_COPY_MOVE(StandardOutput)

    /// Writes a line, which is out at once. Nothing more once a line could not be written.
    void print(const QString &line);

    /// While it is muted, lines are left out.
    void setMuted(bool isMuted) { m_isMuted = isMuted; }

    /// Why a line could not be written; empty as long as all could.
    [[nodiscard]] QString problem() const { return m_problem; }

    /// False once a line found that whoever read is gone.
    [[nodiscard]] bool hasReader() const { return m_hasReader; }

    /// When the reader went away, ends the process as it would have ended at once without this object: by
    /// SIGPIPE. Returns otherwise, and where the process was started with that signal ignored.
    void endBySignal() const;

private:
    QString m_problem;
    bool m_hasReader = true;
    bool m_isMuted = false;
    void (*m_before)(int) = nullptr; ///< what SIGPIPE did
};
