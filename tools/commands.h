#pragma once

#include "tools/runresult.h"

class StandardOutput;

/// What the commands of qv1k-acquire do, each by the arguments of its own. They run whole and block until
/// they are done; main thread.
///
/// A signal that asks the process to end, and an output that nobody reads any more, end them early: within 6
/// s while the detector is asked for something, within 5 s while frames are received. See
/// TerminationSignals::endBySignal() and StandardOutput::endBySignal() for what is left to do then.
namespace Commands {

[[nodiscard]] RunResult acquire(const CommandLine &line, StandardOutput &output);
[[nodiscard]] RunResult calibrate(const CommandLine &line, StandardOutput &output);
[[nodiscard]] RunResult list(const CommandLine &line, StandardOutput &output);
[[nodiscard]] RunResult replay(const CommandLine &line, StandardOutput &output);
[[nodiscard]] RunResult set(const CommandLine &line, StandardOutput &output);
[[nodiscard]] RunResult info(const CommandLine &line, StandardOutput &output);

} // namespace Commands
