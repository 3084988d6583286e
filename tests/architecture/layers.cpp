#include "tests/architecture/layers.h"

#include "tests/architecture/includes.h"

namespace {

bool mayUse(const Layers &layers, const QString &target, const QSet<QString> &homes)
{
    return homes.isEmpty() || layers.usableBy(target).intersects(homes);
}

/// Which of a file's targets must not use what lives in these homes. A file that a list names is compiled in
/// each of its targets; a header that none names is compiled with whoever includes it, and one target that
/// may is enough.
QStringList offendedTargets(const Layers &layers, const QString &path, const QSet<QString> &homes)
{
    QStringList offended;
    const QSet<QString> targets = layers.targetsOf(path);
    for (const QString &target : targets) {
        if (!mayUse(layers, target, homes))
            offended.append(target);
    }
    if (!layers.isListed(path) && offended.size() < targets.size())
        return {};
    offended.sort();
    return offended;
}

QString anyOf(const QSet<QString> &names)
{
    QStringList sorted = names.values();
    sorted.sort();
    return sorted.join(QLatin1String(" or "));
}

QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/'));
}

} // namespace

Layers::Layers(const QString &facts)
{
    const QStringList lines = facts.split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QString word = line.section(u' ', 0, 0);
        const QString target = line.section(u' ', 1, 1);
        const QString other = line.section(u' ', 2);
        if (word == QLatin1String("folder"))
            m_targetsOfFolder[other].insert(target);
        else if (word == QLatin1String("source"))
            m_targetsOfFile[other].insert(target);
        else if (word == QLatin1String("links"))
            m_links[target].insert(other);
        else if (word == QLatin1String("passes"))
            m_passes[target].insert(other);
    }
}

QSet<QString> Layers::targetsOf(const QString &path) const
{
    if (m_targetsOfFile.contains(path))
        return m_targetsOfFile.value(path);
    QString folder = path;
    while (folder.contains(u'/')) {
        folder = folderOf(folder);
        if (m_targetsOfFolder.contains(folder))
            return m_targetsOfFolder.value(folder);
    }
    return {};
}

QSet<QString> Layers::usableBy(const QString &target) const
{
    QSet<QString> usable{target};
    for (const QString &linked : m_links.value(target) + m_passes.value(target))
        usable += reachable(m_passes, linked);
    return usable;
}

QList<Finding> includesAgainstLinks(const SourceTree &tree, const Layers &layers)
{
    const Graph includes = includeGraph(tree);
    QList<Finding> findings;
    for (const SourceFile &file : tree) {
        for (const Include &include : includesOf(file)) {
            if (!includes.value(file.path).contains(include.name))
                continue;
            const QSet<QString> homes = layers.targetsOf(include.name);
            const QStringList offended = offendedTargets(layers, file.path, homes);
            if (!offended.isEmpty())
                findings.append(
                    {file.path, include.line,
                     QStringLiteral(
                         "an include follows the link list, and %1 does not link %2, the home of %3")
                         .arg(offended.join(QLatin1String(" and ")), anyOf(homes), include.name)});
        }
    }
    return findings;
}

QList<Finding> targetCircles(const Layers &layers)
{
    const QStringList circle = findCircle(layers.links());
    if (circle.isEmpty())
        return {};
    return {{QStringLiteral("CMakeLists.txt"), 1,
             QStringLiteral("no target links itself in the end: ") + circle.join(QLatin1String(" -> "))}};
}

QList<Finding> folderCircles(const SourceTree &tree)
{
    Graph folders;
    const Graph includes = includeGraph(tree);
    for (auto file = includes.begin(); file != includes.end(); ++file) {
        for (const QString &included : file.value())
            folders[folderOf(file.key())].insert(folderOf(included));
    }
    const QStringList circle = findCircle(folders);
    if (circle.isEmpty())
        return {};
    return {{circle.first(), 1,
             QStringLiteral("no folder uses itself in the end: ") + circle.join(QLatin1String(" -> "))}};
}
