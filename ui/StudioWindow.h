#pragma once

class QQmlApplicationEngine;
class QQuickWindow;
class Studio;

// Loads the studio window over `studio` into `engine`; the window, or null when the screens
// could not be loaded. The application, the tools and the UI tests all open it this way.
QQuickWindow *loadStudioWindow(QQmlApplicationEngine &engine, Studio &studio);

// Picks the renderer that draws fastest on this machine; loadStudioWindow calls it first.
void prepareRenderer();
