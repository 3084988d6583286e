#include "tests/architecture/includes.h"

#include <QRegularExpression>

namespace {

QSet<QString> pathsOf(const SourceTree &tree)
{
    QSet<QString> paths;
    for (const SourceFile &file : tree)
        paths.insert(file.path);
    return paths;
}

bool isGenerated(const QString &name)
{
    static const QRegularExpression generated(QStringLiteral(R"(^(ui_\w+\.h|\w+\.moc)$)"));
    return generated.match(name).hasMatch();
}

} // namespace

QList<Include> includesOf(const SourceFile &file)
{
    static const QRegularExpression directive(QStringLiteral(R"(^\s*#\s*include\s*(["<])([^">]+)[">])"));
    QList<Include> includes;
    for (qsizetype n = 0; n < file.code.size(); ++n) {
        if (!file.code[n].trimmed().startsWith(u'#'))
            continue;
        const QRegularExpressionMatch match = directive.match(file.lines[n]);
        if (match.hasMatch())
            includes.append({.line = static_cast<int>(n + 1),
                             .name = match.captured(2),
                             .quoted = match.captured(1) == u'"'});
    }
    return includes;
}

Graph includeGraph(const SourceTree &tree)
{
    const QSet<QString> paths = pathsOf(tree);
    Graph graph;
    for (const SourceFile &file : tree) {
        for (const Include &include : includesOf(file)) {
            if (paths.contains(include.name))
                graph[file.path].insert(include.name);
        }
    }
    return graph;
}

QList<Finding> includesBesideThePath(const SourceTree &tree)
{
    const QSet<QString> paths = pathsOf(tree);
    QList<Finding> findings;
    for (const SourceFile &file : tree) {
        for (const Include &include : includesOf(file)) {
            const bool ours = paths.contains(include.name);
            if (include.quoted && !ours && !isGenerated(include.name))
                findings.append(
                    {file.path, include.line,
                     QStringLiteral("an include in quotation marks goes by the path from the project's "
                                    "root, and there is no %1")
                         .arg(include.name)});
            if (!include.quoted && ours)
                findings.append({file.path, include.line,
                                 QStringLiteral("the project's own %1 is included in quotation marks")
                                     .arg(include.name)});
        }
    }
    return findings;
}

QList<Finding> includeCircles(const SourceTree &tree)
{
    const QStringList circle = findCircle(includeGraph(tree));
    if (circle.isEmpty())
        return {};
    return {{circle.first(), 1,
             QStringLiteral("no file includes itself in the end: ") + circle.join(QLatin1String(" -> "))}};
}
