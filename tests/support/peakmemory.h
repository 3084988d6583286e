#pragma once

/// The most memory that this process ever held, in MiB.
[[nodiscard]] int peakMemoryMiB();
