#include "tools/standardoutput.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace {

/// Whether the write that has just failed did so because nobody reads any more.
bool isLeftByReader()
{
#ifdef Q_OS_WIN
    // The C library's own number for it is that of any wrong argument; beside it stands the system's.
    return _doserrno == ERROR_NO_DATA || _doserrno == ERROR_BROKEN_PIPE;
#else
    return errno == EPIPE;
#endif
}

} // namespace

StandardOutput::StandardOutput()
{
#ifdef SIGPIPE
    m_before = std::signal(SIGPIPE, SIG_IGN);
#endif
}

StandardOutput::~StandardOutput()
{
#ifdef SIGPIPE
    std::signal(SIGPIPE, m_before);
#endif
}

void StandardOutput::print(const QString &line)
{
    if (m_isMuted || !m_problem.isEmpty())
        return;
    if (std::puts(qUtf8Printable(line)) >= 0 && std::fflush(stdout) == 0)
        return;
    m_hasReader = !isLeftByReader();
    m_problem = QString::fromLocal8Bit(std::strerror(errno));
}

void StandardOutput::endBySignal() const
{
#ifdef SIGPIPE
    if (m_hasReader)
        return;
    std::signal(SIGPIPE, m_before);
    std::raise(SIGPIPE);
#endif
}
