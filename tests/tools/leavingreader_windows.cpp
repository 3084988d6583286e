#include "tests/tools/leavingreader.h"

#include <utility>

#include <qt_windows.h>

struct LeavingReader::Pipe
{
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;

    static void closeEnd(HANDLE &end)
    {
        if (end != nullptr)
            CloseHandle(std::exchange(end, nullptr));
    }
};

LeavingReader::LeavingReader() : m_pipe(std::make_unique<Pipe>())
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    if (!CreatePipe(&m_pipe->reading, &m_pipe->writing, &inherited, 0) ||
        !SetHandleInformation(m_pipe->reading, HANDLE_FLAG_INHERIT, 0))
        qFatal("no pipe");
}

LeavingReader::~LeavingReader()
{
    Pipe::closeEnd(m_pipe->reading);
    Pipe::closeEnd(m_pipe->writing);
}

void LeavingReader::attachTo(QProcess &process)
{
    const auto before = process.createProcessArgumentsModifier();
    process.setCreateProcessArgumentsModifier([this, before](QProcess::CreateProcessArguments *arguments) {
        if (before)
            before(arguments);
        arguments->startupInfo->hStdOutput = m_pipe->writing;
    });
}

void LeavingReader::readAndLeave(int lines)
{
    Pipe::closeEnd(m_pipe->writing);
    char character = 0;
    DWORD count = 0;
    while (lines > 0 && ReadFile(m_pipe->reading, &character, 1, &count, nullptr) && count == 1)
        lines -= character == '\n' ? 1 : 0;
    Pipe::closeEnd(m_pipe->reading);
}

void LeavingReader::leave()
{
    Pipe::closeEnd(m_pipe->reading);
}
