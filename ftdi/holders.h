#pragma once

#include <string>
#include <vector>

namespace ftdi {

/// A running program that has a file open.
struct Holder
{
    int process;
    std::string name;
};

/// Those other than this that have the file at `path` open, as far as this user may look: other users'
/// programs are not seen.
[[nodiscard]] std::vector<Holder> holdersOf(const std::string &path);

} // namespace ftdi
