#include "StudioWindow.h"

#include "StudioSingleton.h"

#include "app/Studio.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <utility>

namespace {

// Whether the only OpenGL here can be a software rasteriser: Mesa told to rasterise in software,
// or no GPU device to drive. Looked up in the environment and /dev, so it costs no start-up time.
bool softwareRasteriserOnly()
{
    if (qEnvironmentVariableIntValue("LIBGL_ALWAYS_SOFTWARE") != 0)
        return true;
    const QByteArray gallium = qgetenv("GALLIUM_DRIVER");
    if (gallium == "llvmpipe" || gallium == "softpipe" || gallium == "swrast")
        return true;
    const QStringList devices = QDir(QStringLiteral("/dev/dri")).entryList({QStringLiteral("card*"), QStringLiteral("renderD*")},
                                                                         QDir::System);
    return devices.isEmpty() && !QFile::exists(QStringLiteral("/dev/nvidia0"));
}

} // namespace

// OpenGL through a software rasteriser spends tens of milliseconds on every frame and compiles
// shaders at start-up; Qt Quick's own software renderer draws the same screens in a few and
// repaints only what changed. A real GPU keeps the default, and a renderer the user names wins.
void prepareRenderer()
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        return;
    // The choice holds for the process; a second window (the measuring tools open several) keeps it.
    static bool chosen = false;
    if (std::exchange(chosen, true))
        return;
    if (softwareRasteriserOnly())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

QQuickWindow *loadStudioWindow(QQmlApplicationEngine &engine, Studio &studio)
{
    prepareRenderer();
    StudioSingleton::setInstance(&studio);
    // The logo stands for the app in the title bar, the task switcher and the dock, unless the
    // application already took the icon installed in the desktop's theme.
    if (QGuiApplication::windowIcon().isNull())
        QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/MarbleCove/resources/MarbleCoveLogo.png")));
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
