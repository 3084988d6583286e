#pragma once

#include <QAccessible>
#include <QObject>
#include <QString>
#include <QStringList>

/// What assistive technology is told of a window.
namespace AccessibleTree {

/// Calls `see` with everything below and including `top` that is not invisible.
template <typename See>
void walk(QAccessibleInterface *top, const See &see)
{
    if (top == nullptr || top->state().invisible)
        return;
    see(*top);
    for (int i = 0; i < top->childCount(); ++i)
        walk(top->child(i), see);
}

/// What can take the focus and has no name, by object name and class.
inline QStringList nameless(QObject *window, int *focusable)
{
    QStringList found;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface &seen) {
        if (!seen.state().focusable || seen.object() == nullptr)
            return;
        ++*focusable;
        if (seen.text(QAccessible::Name).trimmed().isEmpty())
            found << seen.object()->objectName() + u' ' +
                         QString::fromLatin1(seen.object()->metaObject()->className());
    });
    return found;
}

} // namespace AccessibleTree
