#pragma once

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

/// Nobody may open this file while it lives, and this thread not by being the administrator's either.
class Locked
{
public:
    explicit Locked(std::string path) : m_path(std::move(path))
    {
        struct stat status = {};
        if (stat(m_path.c_str(), &status) != 0 || chmod(m_path.c_str(), 0) != 0 ||
            syscall(SYS_capget, &m_header, m_before.data()) != 0)
            throw std::runtime_error("the file cannot be locked");
        m_mode = status.st_mode;
        auto without = m_before;
        without[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
        if (syscall(SYS_capset, &m_header, without.data()) != 0)
            throw std::runtime_error("the right to open every file cannot be laid down");
    }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;
    ~Locked()
    {
        syscall(SYS_capset, &m_header, m_before.data());
        chmod(m_path.c_str(), m_mode);
    }

private:
    std::string m_path;
    mode_t m_mode = 0;
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> m_before{};
};
