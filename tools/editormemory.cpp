// Pastes a long text into the code editor, selects it all and types over it, again and again,
// and reports the resident memory as it goes. Not a test; a figure for a person to read.
//   editormemory [cycles] [characters]
#include "ItemSearch.h"
#include "ProcessMemory.h"
#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    const int cycles = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 50;
    const int characters = argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 100000;

    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
    store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
    Studio studio(store);
    QQmlApplicationEngine engine;
    QQuickWindow *window = loadStudioWindow(engine, studio);
    if (!window || !QTest::qWaitForWindowExposed(window))
        return 1;
    QQuickItem *editor = findItem(window->contentItem(), QStringLiteral("codeEditor"));
    if (!editor)
        return 2;
    studio.enterFree();

    const QString line = QStringLiteral("repeat 4 [ forward 100 right 90 ] ; a square\n");
    QGuiApplication::clipboard()->setText(line.repeated(characters / line.size() + 1).left(characters));
    editor->forceActiveFocus();
    QTest::qWait(200);
    const double start = processMemory().residentMiB;
    std::printf("cycles: %d, pasting %d characters each; resident at the start %.1f MiB\n", cycles, characters, start);
    double peak = start;
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        QMetaObject::invokeMethod(editor, "paste");
        QTest::qWait(20);
        QMetaObject::invokeMethod(editor, "selectAll");
        for (const char key : {'f', 'd', ' ', '1', '0'})
            QTest::keyClick(window, key);
        QTest::qWait(20);
        const double now = processMemory().residentMiB;
        peak = std::max(peak, now);
        if (cycle % 10 == 0)
            std::printf("after %d cycles: %.1f MiB (%+.1f)\n", cycle, now, now - start);
    }
    QTest::qWait(500); // what a child's next glance at the window finds
    const double end = processMemory().residentMiB;
    std::printf("resident at the end %.1f MiB, %+.1f MiB from the start, peak %.1f MiB; code now %lld characters\n",
                end, end - start, peak, qint64(studio.code().size()));
    return 0;
}
