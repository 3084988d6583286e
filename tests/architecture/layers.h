#pragma once

#include "tests/architecture/finding.h"
#include "tests/architecture/graph.h"
#include "tests/architecture/sourcetree.h"

/// The targets as CMake wrote them down (cmake/TargetList.cmake), and who may know whom by their link lists.
class Layers
{
public:
    explicit Layers(const QString &facts);

    /// The targets that compile a file; for a file that no list names, those of its folder or of the nearest
    /// one above.
    [[nodiscard]] QSet<QString> targetsOf(const QString &path) const;

    /// Whether a target's list of sources names a file.
    [[nodiscard]] bool isListed(const QString &path) const { return m_targetsOfFile.contains(path); }

    /// What a target may use: itself, what it links, and what that hands on.
    [[nodiscard]] QSet<QString> usableBy(const QString &target) const;

    [[nodiscard]] const Graph &links() const { return m_links; }

private:
    Graph m_targetsOfFolder;
    Graph m_targetsOfFile;
    Graph m_links;
    Graph m_passes;
};

/// Includes of a file whose target the including file's target does not link.
[[nodiscard]] QList<Finding> includesAgainstLinks(const SourceTree &tree, const Layers &layers);

/// A circle among the targets' link lists, if there is one.
[[nodiscard]] QList<Finding> targetCircles(const Layers &layers);

/// A circle among the folders, by what their files include, if there is one.
[[nodiscard]] QList<Finding> folderCircles(const SourceTree &tree);
