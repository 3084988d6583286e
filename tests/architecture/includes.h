#pragma once

#include "tests/architecture/finding.h"
#include "tests/architecture/graph.h"
#include "tests/architecture/sourcetree.h"

struct Include
{
    int line = 0;
    QString name;
    bool quoted = false; ///< "name", not <name>
};

[[nodiscard]] QList<Include> includesOf(const SourceFile &file);

/// Which of the project's files a file includes.
[[nodiscard]] Graph includeGraph(const SourceTree &tree);

/// Includes that do not go by the path from the project's root, in quotation marks. What the build generates
/// (`ui_*.h`, `*.moc`) lies in no folder of the project and is left out.
[[nodiscard]] QList<Finding> includesBesideThePath(const SourceTree &tree);

/// A circle among the files' includes, if there is one.
[[nodiscard]] QList<Finding> includeCircles(const SourceTree &tree);
