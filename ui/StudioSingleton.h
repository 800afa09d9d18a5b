#pragma once

#include "app/Studio.h"

#include <QJSEngine>
#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

// Hands the one Studio of the process to QML as the singleton `Studio`. The application (or a
// test) creates the Studio on its store and registers it here before loading any screen.
struct StudioSingleton
{
    Q_GADGET
    QML_FOREIGN(Studio)
    QML_NAMED_ELEMENT(Studio)
    QML_SINGLETON

public:
    static void setInstance(Studio *studio) { s_instance = studio; }

    static Studio *create(QQmlEngine *, QJSEngine *)
    {
        Q_ASSERT(s_instance);
        QJSEngine::setObjectOwnership(s_instance, QJSEngine::CppOwnership);
        return s_instance;
    }

private:
    inline static Studio *s_instance = nullptr;
};
