#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

/// Who knows whom.
using Graph = QMap<QString, QSet<QString>>;

/// One way round a circle, its first name again at the end; empty when there is none. A name that knows
/// itself is no circle.
[[nodiscard]] QStringList findCircle(const Graph &graph);

/// Everything that can be reached from a name, itself included.
[[nodiscard]] QSet<QString> reachable(const Graph &graph, const QString &from);
