/// Included at the top of every source that defects were planted in. Not part of the program.
#pragma once

#include <array>
#include <atomic>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace mutation {

inline constexpr std::size_t mostDefects = 5000;

/// Whether the program is to show that defect: the one that QV1K_DEFECT names. The numbers of all that were
/// come by are appended to the file QV1K_DEFECT_TRACE, each once for each source. Any thread.
inline bool is(std::size_t number)
{
    static const char *const chosen = std::getenv("QV1K_DEFECT");
    static const std::size_t shown = chosen != nullptr ? std::strtoul(chosen, nullptr, 10) : mostDefects;
    static const char *const trace = std::getenv("QV1K_DEFECT_TRACE");
    static std::array<std::atomic<bool>, mostDefects> seen;
    if (trace != nullptr && !seen[number].exchange(true)) {
        const std::string line = std::to_string(number) + '\n';
        const int file = open(trace, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
        static_cast<void>(!write(file, line.data(), line.size()));
        close(file);
    }
    return number == shown;
}

} // namespace mutation
