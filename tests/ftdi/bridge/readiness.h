#pragma once

#include <string>

/// A device node that a client can wait on: a pipe that has no room while there is nothing to reap, and that
/// loses its reader when the cable is pulled. Not thread-safe, but for standInFor().
class Readiness
{
public:
    /// Makes the node at that path, and removes it in the end.
    explicit Readiness(std::string path);
    Readiness(const Readiness &) = delete;
    Readiness &operator=(const Readiness &) = delete;
    ~Readiness();

    /// From now on that open file of this process is the end that is written to. Whoever opens the node can
    /// read from it as well, as its library does, and would be a reader that is never lost. An end stays one.
    void standInFor(int file) const;
    void set(bool isReady);
    void hangUp();
    /// Nobody opens the node any more.
    void remove() const;

    [[nodiscard]] const std::string &path() const { return m_path; }

private:
    const std::string m_path;
    int m_reader = -1;
    int m_writer = -1;
    bool m_isReady = true;
};
