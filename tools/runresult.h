#pragma once

#include "tools/commandline/commandline.h"

#include <QString>

/// How a command ended.
struct RunResult
{
    QString problem; ///< in one line; empty when all is as it should be
    int status = ExitStatus::complete;
};
