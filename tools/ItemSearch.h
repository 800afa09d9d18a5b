#pragma once
// The tools drive the real window; visual children are not always QObject children, so
// findChild() misses some of them and the tools walk the item tree instead.
#include <QQuickItem>

inline QQuickItem *findItem(QQuickItem *root, const QString &name)
{
    if (root->objectName() == name)
        return root;
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = findItem(child, name))
            return found;
    }
    return nullptr;
}
