#pragma once

/// How many times as long a test may take, which a run under ThreadSanitizer raises: all that a test waits
/// for comes many times as late then. Where a wait is a limit of the program's that a test sets, it sets it
/// by this too.
#ifdef __SANITIZE_THREAD__
constexpr int patience = 4;
#else
constexpr int patience = 1;
#endif

/// For what comes sooner or later, however loaded the machine is. In milliseconds.
constexpr int patienceMs = 60'000;
