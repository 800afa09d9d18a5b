#include "StudioWindow.h"

#include "StudioSingleton.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

QQuickWindow *loadStudioWindow(QQmlApplicationEngine &engine, Studio &studio)
{
    StudioSingleton::setInstance(&studio);
    // Qt 6.4 keeps the module's files under qrc:/MarbleCove/ and does not look there by itself.
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.load(QUrl(QStringLiteral("qrc:/MarbleCove/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return nullptr;
    return qobject_cast<QQuickWindow *>(engine.rootObjects().first());
}
