#include "tests/ftdi/bridge/readiness.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

Readiness::Readiness()
{
    // Who opens a terminal may become its owner, and would be told that it hung up or be stopped by it.
    std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGTTOU, SIG_IGN);
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    std::array<char, 64> name{};
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0 ||
        ptsname_r(m_master, name.data(), name.size()) != 0)
        throw std::runtime_error("no terminal to be had");
    m_path = name.data();
    m_slave = ioctl(m_master, TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC);
    set(false);
}

Readiness::~Readiness()
{
    hangUp();
    close(m_slave);
}

void Readiness::set(bool isReady)
{
    if (m_master < 0 || isReady == m_isReady)
        return;
    m_isReady = isReady;
    tcflow(m_slave, isReady ? TCOON : TCOOFF);
}

void Readiness::hangUp()
{
    if (m_master >= 0)
        close(m_master);
    m_master = -1;
}
