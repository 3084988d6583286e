#include "tests/ftdi/bridge/readiness.h"

#include <array>
#include <filesystem>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The smallest pipe there is: filled by one write, emptied by one read.
constexpr int pipeSize = 4096;

void check(bool isGood)
{
    if (!isGood)
        throw std::runtime_error("no pipe to be had");
}

} // namespace

Readiness::Readiness(std::string path) : m_path(std::move(path))
{
    std::filesystem::create_directories(std::filesystem::path(m_path).parent_path());
    check(mkfifo(m_path.c_str(), 0600) == 0);
    m_reader = open(m_path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    m_writer = open(m_path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    check(m_reader >= 0 && m_writer >= 0);
    check(fcntl(m_writer, F_SETPIPE_SZ, pipeSize) == pipeSize);
    set(false);
}

Readiness::~Readiness()
{
    hangUp();
    close(m_writer);
    remove();
}

void Readiness::remove() const
{
    unlink(m_path.c_str());
}

void Readiness::standInFor(int file) const
{
    const bool isAnEnd = (fcntl(file, F_GETFL) & O_ACCMODE) != O_RDWR;
    check(isAnEnd || dup3(m_writer, file, O_CLOEXEC) == file);
}

void Readiness::set(bool isReady)
{
    if (m_reader < 0 || isReady == m_isReady)
        return;
    m_isReady = isReady;
    std::array<char, pipeSize> filling{};
    check((isReady ? read(m_reader, filling.data(), filling.size())
                   : write(m_writer, filling.data(), filling.size())) == pipeSize);
}

void Readiness::hangUp()
{
    if (m_reader >= 0)
        close(m_reader);
    m_reader = -1;
}
