// Renders the studio in a few states to PNG files, for a person to look at. Not a test.
//   screenshots <output folder>
#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <functional>
#include <utility>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

namespace {

void stepToEnd(Studio &studio)
{
    studio.step();
    while (studio.stepIndex() < studio.stepTotal())
        studio.step();
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("screenshots");
    QDir().mkpath(out);

    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    Studio studio(store);
    QQmlApplicationEngine engine;
    QQuickWindow *window = loadStudioWindow(engine, studio);
    if (!window)
        return 1;

    const auto shoot = [&](const QString &name, const std::function<void()> &arrange) {
        arrange();
        QTest::qWait(450); // let sheets finish opening
        const QString path = QDir(out).filePath(name + QStringLiteral(".png"));
        if (!window->grabWindow().save(path))
            qWarning("could not write %s", qPrintable(path));
        else
            qInfo("%s", qPrintable(path));
    };

    // The welcome flow, page by page, as a first-time child sees it.
    QObject *root = engine.rootObjects().first();
    const auto welcomePage = [&](int page) {
        if (QObject *view = root->findChild<QObject *>(QStringLiteral("welcomeView")))
            view->setProperty("page", page);
    };
    shoot(QStringLiteral("first-start"), [] {});
    shoot(QStringLiteral("welcome-2-name"), [&] {
        welcomePage(1);
        if (QObject *view = root->findChild<QObject *>(QStringLiteral("welcomeView")))
            view->setProperty("player", QStringLiteral("Ada"));
    });
    shoot(QStringLiteral("welcome-3-turtle"), [&] { welcomePage(2); });
    shoot(QStringLiteral("welcome-4-tour"), [&] {
        welcomePage(3);
        if (QObject *view = root->findChild<QObject *>(QStringLiteral("welcomeView")))
            view->setProperty("demoStep", 2);
    });
    shoot(QStringLiteral("mission-0-target"), [&] {
        studio.finishWelcome(1, QStringLiteral("Peaches"), QStringLiteral("Ada"));
        studio.select(0);
        studio.setShowTarget(true);
        studio.requestHint();
    });
    shoot(QStringLiteral("running"), [&] {
        studio.setShowTarget(false);
        studio.setCode(QStringLiteral("repeat 5 [\n  forward 80\n  right 144\n]\n"));
        studio.setSpeed(Studio::slowestSpeed);
        studio.run();
        QTest::qWait(1200);
    });
    // Stepping inside a recipe: its word lit in the recipe, its call in the program more faintly.
    shoot(QStringLiteral("stepping-recipe"), [&] {
        studio.stop();
        studio.setCode(QStringLiteral("to side\n  forward 60\n  right 90\nend\nrepeat 4 [\n  side\n]\n"));
        for (int i = 0; i < 3; ++i)
            studio.step();
    });
    shoot(QStringLiteral("code-error"), [&] {
        studio.stop();
        studio.setCode(QStringLiteral("to petal\n  repeat 3 [forward 60 right 120]\nend\nrepeat 6 [\n  petal\n  jump 60\n]\n"));
        studio.run();
    });
    shoot(QStringLiteral("celebration"), [&] {
        studio.stop();
        studio.setCode(missions().at(0).solution);
        stepToEnd(studio);
    });
    shoot(QStringLiteral("what-is-different"), [&] {
        studio.setCelebration(false);
        QTest::qWait(300);
        studio.select(1);
        studio.setCode(QStringLiteral("forward 100\nright 90\npenup forward 20 pendown\nforward 100\n"));
        stepToEnd(studio);
        studio.setShowDifference(true);
    });
    shoot(QStringLiteral("free-play"), [&] {
        studio.setCelebration(false);
        QTest::qWait(300);
        studio.enterFree();
        studio.setCode(QStringLiteral("color pink width 6\nrepeat 36 [\n  forward 120\n  right 170\n]\n"));
        stepToEnd(studio);
    });
    // Long lines wrap in the editor, and after a run the view is where it was.
    shoot(QStringLiteral("editor-long-lines"), [&] {
        studio.setCelebration(false);
        studio.setCode(QStringLiteral("; Two long sides, two short sides\nrepeat 2 [forward 160 right 90 forward 60 right 90]\n"
                                      "  repeat 4 [forward 80 right 90]\n"));
        stepToEnd(studio);
    });
    // Keyboard focus: the ring on the control Tab reached.
    const auto focusOn = [&](const char *name) {
        if (auto *item = qobject_cast<QQuickItem *>(root->findChild<QObject *>(QString::fromLatin1(name))))
            item->forceActiveFocus(Qt::TabFocusReason);
    };
    shoot(QStringLiteral("focus-run-button"), [&] { focusOn("runButton"); });
    shoot(QStringLiteral("focus-companion-card"), [&] { focusOn("companionCard_2"); });
    shoot(QStringLiteral("world-picker-open"), [&] {
        focusOn("worldPicker");
        QTest::keyClick(window, Qt::Key_Space);
        QTest::qWait(200);
        QTest::keyClick(window, Qt::Key_Down);
    });
    shoot(QStringLiteral("theme-menu-open"), [&] {
        QTest::keyClick(window, Qt::Key_Escape);
        QTest::qWait(200);
        if (QObject *menu = root->findChild<QObject *>(QStringLiteral("themeMenu")))
            QMetaObject::invokeMethod(menu, "open");
    });
    shoot(QStringLiteral("save-dialog"), [&] {
        if (QObject *menu = root->findChild<QObject *>(QStringLiteral("themeMenu")))
            QMetaObject::invokeMethod(menu, "close");
        studio.setCreationTitle(QStringLiteral("My masterpiece"));
        studio.setSaving(true);
    });
    shoot(QStringLiteral("companion-sheet"), [&] {
        QTest::qWait(300);
        studio.setCompanionSettings(true);
    });
    shoot(QStringLiteral("companion-sheet-royal"), [&] {
        studio.setCompanionSettings(false);
        QTest::qWait(300);
        for (int mission = 1; mission < 3; ++mission) {
            studio.select(mission);
            studio.setCode(missions().at(mission).solution);
            stepToEnd(studio);
            studio.setCelebration(false);
        }
        QTest::qWait(300);
        studio.setCompanionSettings(true);
    });
    shoot(QStringLiteral("profile-sheet"), [&] {
        studio.setCompanionSettings(false);
        QTest::qWait(300);
        studio.setPlayerSettings(true);
    });
    shoot(QStringLiteral("profile-erase-alert"), [&] {
        if (QObject *alert = root->findChild<QObject *>(QStringLiteral("eraseAlert")))
            QMetaObject::invokeMethod(alert, "open");
    });
    shoot(QStringLiteral("export-dialog"), [&] {
        studio.setPlayerSettings(false);
        studio.setSaving(false);
        QTest::qWait(300);
        if (QObject *dialog = root->findChild<QObject *>(QStringLiteral("exportDialog")))
            QMetaObject::invokeMethod(dialog, "start");
    });
    // The smallest window: the columns show that they go on.
    shoot(QStringLiteral("smallest-window"), [&] {
        if (QObject *dialog = root->findChild<QObject *>(QStringLiteral("exportDialog")))
            QMetaObject::invokeMethod(dialog, "close");
        window->resize(1100, 780);
    });

    window->resize(1380, 920);

    // The side sheets: world map, treasure shelf, gallery and handbook, in a few states.
    const auto closeSheets = [&] {
        studio.setPlayerSettings(false);
        studio.setCelebration(false);
        studio.setSaving(false);
        studio.setMap(false);
        studio.setCollection(false);
        studio.setGallery(false);
        studio.setGuide(false);
        QTest::qWait(300);
    };
    const auto earn = [&](const QList<int> &earned) {
        for (int mission : earned) {
            studio.select(mission);
            studio.setCode(missions().at(mission).solution);
            stepToEnd(studio);
            studio.setCelebration(false);
        }
    };
    const auto scrollSheet = [&](const char *scroller, qreal fraction) {
        QTest::qWait(300);
        if (QObject *view = root->findChild<QObject *>(QString::fromLatin1(scroller))) {
            // A grid scrolls itself; a scroll view scrolls the area inside it.
            QObject *flickable = view->inherits("QQuickFlickable") ? view : view->property("contentItem").value<QObject *>();
            if (flickable) {
                const qreal room = flickable->property("contentHeight").toReal() - flickable->property("height").toReal();
                flickable->setProperty("contentY", std::max<qreal>(0, room * fraction));
            }
        }
    };
    shoot(QStringLiteral("map-three-badges"), [&] {
        closeSheets();
        studio.setMap(true);
    });
    shoot(QStringLiteral("shelf-3-badges"), [&] {
        closeSheets();
        studio.setCollection(true);
    });
    shoot(QStringLiteral("handbook"), [&] {
        closeSheets();
        studio.setGuide(true);
    });
    shoot(QStringLiteral("handbook-scrolled"), [&] { scrollSheet("guideScroller", 1); });
    shoot(QStringLiteral("handbook-running"), [&] {
        closeSheets();
        studio.setCode(QStringLiteral("repeat 40 [forward 10 right 9]\n"));
        studio.run();
        studio.setGuide(true);
    });
    shoot(QStringLiteral("gallery-empty"), [&] {
        studio.stop();
        closeSheets();
        studio.setGallery(true);
    });
    shoot(QStringLiteral("gallery-full"), [&] {
        closeSheets();
        studio.enterFree();
        const QList<std::pair<QString, QString>> saved{
            {QStringLiteral("Starburst"), QStringLiteral("color pink width 6\nrepeat 36 [forward 120 right 170]")},
            {QStringLiteral("Square one"), QStringLiteral("repeat 4 [forward 80 right 90]")},
            {QStringLiteral("A star for the night sky above the cove, with a long name"),
             QStringLiteral("color blue\nrepeat 5 [forward 100 right 144]")},
            {QStringLiteral("Green line"), QStringLiteral("color green width 10\nforward 300")},
            {QStringLiteral("Spinning squares"), QStringLiteral("color orange\nrepeat 12 [repeat 4 [forward 60 right 90] right 30]")},
            {QStringLiteral("Nothing yet"), QStringLiteral("penup forward 10")},
            {QStringLiteral("Circle"), QStringLiteral("color purple\nrepeat 60 [forward 6 right 6]")},
        };
        for (qsizetype i = 0; i < saved.size(); ++i) {
            studio.setTheme(int(i % 6));
            studio.setCode(saved.at(i).second);
            stepToEnd(studio);
            studio.setCreationTitle(saved.at(i).first);
            studio.saveCreation();
            studio.finishSaving();
        }
        studio.setTheme(0);
        QTest::qWait(300);
        studio.setGallery(true);
    });
    shoot(QStringLiteral("gallery-scrolled"), [&] { scrollSheet("creationGrid", 1); });
    shoot(QStringLiteral("map-worlds-open"), [&] {
        closeSheets();
        earn({3, 4, 5, 6, 7});
        studio.setMap(true);
    });
    shoot(QStringLiteral("map-worlds-open-scrolled"), [&] { scrollSheet("mapScroller", 1); });
    shoot(QStringLiteral("shelf-9-badges-canvases"), [&] {
        closeSheets();
        studio.setCollection(true);
        scrollSheet("treasureScroller", 1);
    });
    shoot(QStringLiteral("shelf-30-badges"), [&] {
        closeSheets();
        QList<int> rest;
        for (int mission = 0; mission < int(missions().size()); ++mission)
            rest.append(mission);
        earn(rest);
        studio.setTheme(5);
        closeSheets();
        studio.setCollection(true);
    });
    shoot(QStringLiteral("shelf-30-badges-canvases"), [&] { scrollSheet("treasureScroller", 1); });
    shoot(QStringLiteral("map-all-earned"), [&] {
        closeSheets();
        studio.setMap(true);
    });
    shoot(QStringLiteral("shelf-0-badges"), [&] {
        closeSheets();
        studio.resetGame();
        studio.finishWelcome(0, QStringLiteral("Clover"), QString());
        closeSheets();
        studio.setCollection(true);
    });
    shoot(QStringLiteral("shelf-0-badges-canvases"), [&] { scrollSheet("treasureScroller", 1); });
    return 0;
}
