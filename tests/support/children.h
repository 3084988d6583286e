#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <QWidget>

/// The child of that type and object name. When there is none, fails the test with the names that there are.
template <typename Widget>
Widget *getChild(const QWidget &parent, const char *name)
{
    auto *child = parent.findChild<Widget *>(QString::fromLatin1(name));
    if (child == nullptr) {
        QStringList names;
        const auto children = parent.findChildren<Widget *>();
        for (const Widget *candidate : children)
            names << candidate->objectName();
        ADD_FAILURE() << "no child named " << name << "; there are: " << qPrintable(names.join(u' '));
        qFatal("missing widget");
    }
    return child;
}
