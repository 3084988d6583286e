#include "tests/tools/leavingreader.h"

#include <array>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

struct LeavingReader::Pipe
{
    std::array<int, 2> ends{-1, -1};

    void closeEnd(std::size_t end)
    {
        if (ends[end] >= 0)
            close(std::exchange(ends[end], -1));
    }
};

LeavingReader::LeavingReader() : m_pipe(std::make_unique<Pipe>())
{
    if (pipe2(m_pipe->ends.data(), O_CLOEXEC) != 0)
        qFatal("no pipe");
}

LeavingReader::~LeavingReader()
{
    m_pipe->closeEnd(0);
    m_pipe->closeEnd(1);
}

void LeavingReader::attachTo(QProcess &process)
{
    process.setChildProcessModifier([this] { dup2(m_pipe->ends[1], STDOUT_FILENO); });
}

void LeavingReader::readAndLeave(int lines)
{
    m_pipe->closeEnd(1);
    char character = 0;
    while (lines > 0 && read(m_pipe->ends[0], &character, 1) == 1)
        lines -= character == '\n' ? 1 : 0;
    m_pipe->closeEnd(0);
}

void LeavingReader::leave()
{
    m_pipe->closeEnd(0);
}
