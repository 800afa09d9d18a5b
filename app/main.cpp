// Marble Cove: one window, one Studio on the child's own saved state.
#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"

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

    QQmlApplicationEngine engine;
    if (!loadStudioWindow(engine, studio))
        return 1;
    return app.exec();
}
