#pragma once

#include <QString>

/// Puts one line into the log and, by the log or without it, on the debug output.
void reportFailure(const QString &line);
