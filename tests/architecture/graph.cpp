#include "tests/architecture/graph.h"

namespace {

class Search
{
public:
    explicit Search(const Graph &graph) : m_graph(graph) {}

    /// Follows every way on from a name that was not gone before; true when one comes back to the way so far.
    bool closesCircle(const QString &name)
    {
        m_way.append(name);
        QStringList next = m_graph.value(name).values();
        next.sort(); // the same circle is told every time
        for (const QString &other : next) {
            if (other != name && m_way.contains(other)) {
                m_way = m_way.mid(m_way.indexOf(other));
                m_way.append(other);
                return true;
            }
            if (other != name && !m_done.contains(other) && closesCircle(other))
                return true;
        }
        m_way.removeLast();
        m_done.insert(name);
        return false;
    }

    [[nodiscard]] bool isDone(const QString &name) const { return m_done.contains(name); }
    [[nodiscard]] QStringList way() const { return m_way; }

private:
    const Graph &m_graph;
    QStringList m_way;
    QSet<QString> m_done;
};

} // namespace

QStringList findCircle(const Graph &graph)
{
    Search search(graph);
    for (const QString &name : graph.keys()) {
        if (!search.isDone(name) && search.closesCircle(name))
            return search.way();
    }
    return {};
}

QSet<QString> reachable(const Graph &graph, const QString &from)
{
    QSet<QString> seen{from};
    QStringList waiting{from};
    while (!waiting.isEmpty()) {
        for (const QString &next : graph.value(waiting.takeLast())) {
            if (!seen.contains(next)) {
                seen.insert(next);
                waiting.append(next);
            }
        }
    }
    return seen;
}
