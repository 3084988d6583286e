#pragma once

#include <string>

/// docs/reliability.md: the table as it is run.
[[nodiscard]] std::string reliabilityDocument();
