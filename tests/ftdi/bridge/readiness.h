#pragma once

#include <string>

/// A device node on which a client can wait: a terminal whose output is stopped while there is nothing to
/// reap, and that hangs up when the cable is pulled. Not thread-safe.
class Readiness
{
public:
    Readiness();
    Readiness(const Readiness &) = delete;
    Readiness &operator=(const Readiness &) = delete;
    ~Readiness();

    [[nodiscard]] std::string path() const { return m_path; }
    void set(bool isReady);
    void hangUp();

private:
    int m_master = -1;
    int m_slave = -1;
    bool m_isReady = true;
    std::string m_path;
};
