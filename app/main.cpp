// Marble Cove: one window, one Studio on the child's own saved state.
#include "app/SingleInstance.h"
#include "app/Studio.h"
#include "profile/DataFolder.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"

#include <QGuiApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Marble Cove"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Marble Cove"));
    QGuiApplication::setDesktopFileName(QLatin1String(applicationId));
    // The installed theme icon where there is one, else the logo the program carries.
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QLatin1String(applicationId),
                                                    QIcon(QStringLiteral(":/MarbleCove/resources/MarbleCoveLogo.png"))));

    // A second start only brings the running studio to the front.
    SingleInstance instance;
    if (!instance.claim())
        return 0;

    SqlitePreferencesStore store;
    Studio studio(store);

    QQmlApplicationEngine engine;
    QQuickWindow *window = loadStudioWindow(engine, studio);
    if (!window)
        return 1;
    QObject::connect(&instance, &SingleInstance::activationRequested, window, [window] {
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
        window->show();
        window->raise();
        window->requestActivate();
    });
    // The package check starts the installed binary and needs it to stop once it has drawn.
    if (qEnvironmentVariableIsSet("MARBLECOVE_EXIT_AFTER_FIRST_FRAME")) {
        QObject::connect(window, &QQuickWindow::frameSwapped, &app, [] {
            qInfo("first frame drawn");
            QCoreApplication::quit();
        }, Qt::QueuedConnection);
    }
    return app.exec();
}
