#pragma once

#include <QProcess>

#include <memory>

/// Reads a program's standard output for a while and leaves: whatever is written then has no reader any more.
class LeavingReader
{
public:
    LeavingReader();
    ~LeavingReader();
    Q_DISABLE_COPY_MOVE(LeavingReader)

    /// To be called before the program is started.
    void attachTo(QProcess &process);
    /// To be called when it was started. Blocks until so many lines came, or the output ended.
    void readAndLeave(int lines);
    /// Instead, to be called before the program is started: nobody ever reads.
    void leave();

private:
    struct Pipe;
    std::unique_ptr<Pipe> m_pipe;
};
