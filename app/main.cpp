// Marble Cove: one window, one Studio on the child's own saved state.
#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioSingleton.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Marble Cove"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Marble Cove"));

    SqlitePreferencesStore store;
    Studio studio(store);
    StudioSingleton::setInstance(&studio);

    QQmlApplicationEngine engine;
    // Qt 6.4 keeps the module's files under qrc:/MarbleCove/ and does not look there by itself.
    engine.addImportPath(QStringLiteral("qrc:/"));
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreationFailed, &app,
                     [] { QCoreApplication::exit(1); }, Qt::QueuedConnection);
    engine.load(QUrl(QStringLiteral("qrc:/MarbleCove/Main.qml")));
    return app.exec();
}
