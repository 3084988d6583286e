#pragma once

#include "tools/runresult.h"

#include <functional>

struct D2xxLibrary;
class QJsonObject;
class StandardOutput;

/// What --json prints: one object in one line, however the command ended, and nothing else. --help tells
/// its keys.
namespace Summary {

using Work = std::function<RunResult(QJsonObject &summary, StandardOutput &output)>;

/// Does the work. With `isWanted` what it prints is left out, and what it put into the summary is printed in
/// the end, with how it ended.
[[nodiscard]] RunResult tell(bool isWanted, StandardOutput &output, const Work &work);

/// Adds where data come from.
void addSource(QJsonObject &summary, const D2xxLibrary &library, const QString &serial);

/// Adds how many frames came in how long.
void addFrames(QJsonObject &summary, int frames, double seconds);

} // namespace Summary
