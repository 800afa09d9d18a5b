#include "StudioWindow.h"

#include "StudioSingleton.h"

#include "app/Studio.h"

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
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().first());
    // Once the studio is on screen the gallery is decoded on a worker, so that neither
    // start-up nor opening the gallery waits for it.
    if (window)
        QObject::connect(window, &QQuickWindow::frameSwapped, &studio, &Studio::decodeCreationsAhead,
                         Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    return window;
}
