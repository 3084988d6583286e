#include "tools/standardoutput.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

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
    if (!m_problem.isEmpty())
        return;
    if (std::puts(qUtf8Printable(line)) >= 0 && std::fflush(stdout) == 0)
        return;
    m_hasReader = errno != EPIPE;
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
