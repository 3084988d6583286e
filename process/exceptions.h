#pragma once

/// Tells of an exception that nobody took, in the log, or on the debug output when there is none. Any thread;
/// only from within a catch clause.
void reportException() noexcept;
