// The world map, the treasure shelf, the gallery and the handbook, used as a child uses them:
// real clicks on the real sheets over a real Studio on a temporary store. Any QML warning
// fails the test it happened in.
#include "UiHarness.h"

#include "curriculum/Themes.h"
#include "gallery/CreationCodec.h"
#include "ui/screens/CreationModel.h"

#include <QTest>
#include <QtQuickTest/quicktest.h>
#include <QWheelEvent>

#include <memory>

#define UI(step) QVERIFY2((step), ui->why())

namespace {

QList<qint64> range(int from, int to)
{
    QList<qint64> missions;
    for (int i = from; i < to; ++i)
        missions.append(i);
    return missions;
}

Stroke line(QPointF from, QPointF to, const QString &color = QStringLiteral("blue"))
{
    return Stroke{from, to, color, 4};
}

Creation creation(const QString &title, int theme, const QList<Stroke> &strokes = {}, int turtle = 0,
                  const QString &code = QStringLiteral("forward 10\n"))
{
    Creation made;
    made.title = title;
    made.code = code;
    made.date = QDateTime(QDate(2024, 3, 5), QTime(14, 7), Qt::UTC);
    made.turtle = turtle;
    made.theme = theme;
    made.strokes = strokes;
    return made;
}

// The top-left corner of an item in window coordinates.
QPointF corner(QQuickItem *item)
{
    return item->mapToScene(QPointF(0, 0));
}

} // namespace

class SideScreensTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> ui;

    bool startReturning(const QList<qint64> &completed = {}, const QList<Creation> &creations = {})
    {
        ui->seedReturningPlayer();
        if (!completed.isEmpty())
            ui->seedCompleted(completed);
        if (!creations.isEmpty())
            ui->store().setData(QStringLiteral("creations"), encodeCreations(creations));
        return ui->start();
    }

    // A click once the window has laid itself out: positioners, layouts and grids place their
    // children only then, so a click before it would land where a control used to be.
    bool press(const QString &name, UiHarness::Require require = UiHarness::Require::Enabled)
    {
        settle();
        return ui->click(name, require);
    }

    void settle() { QQuickTest::qWaitForPolish(ui->window()); }

    bool openSheet(const QString &button, const QString &sheet)
    {
        if (!press(button) || !ui->waitForSheet(sheet, true))
            return false;
        settle();
        return true;
    }

private slots:
    void init() { ui = std::make_unique<UiHarness>(); }

    void cleanup()
    {
        ui->shutDown();
        const QStringList warnings = UiHarness::takeWarnings();
        ui.reset();
        QVERIFY2(warnings.isEmpty(), qPrintable(QStringLiteral("QML warnings:\n") + warnings.join(u'\n')));
    }

    // ---- World map

    void exploreSelectsFirstUnearnedMission_data()
    {
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<int>("world");
        QTest::addColumn<int>("expected");
        QTest::newRow("nothing earned") << QList<qint64>{} << 0 << 0;
        QTest::newRow("first world complete starts over") << range(0, 6) << 0 << 0;
        QTest::newRow("first, second and fourth earned") << (range(0, 6) << 6 << 7 << 9) << 1 << 8;
        QTest::newRow("only the last missing") << (range(0, 6) << 6 << 7 << 8 << 9 << 10) << 1 << 11;
        QTest::newRow("last world") << (range(0, 25) << 26) << 4 << 25;
    }

    void exploreSelectsFirstUnearnedMission()
    {
        QFETCH(QList<qint64>, completed);
        QFETCH(int, world);
        QFETCH(int, expected);
        UI(startReturning(completed));
        UI(openSheet(QStringLiteral("mapButton"), QStringLiteral("mapSheet")));

        const QString explore = QStringLiteral("exploreButton_%1").arg(world);
        QCOMPARE(ui->text(explore), QStringLiteral("Explore"));
        UI(press(explore));
        QCOMPARE(ui->studio().mission(), expected);
        QVERIFY(!ui->studio().free());
        QVERIFY(!ui->studio().map());
        UI(ui->waitForSheet(QStringLiteral("mapSheet"), false));
        // The sidebar follows the chosen mission to its world.
        QCOMPARE(ui->property(QStringLiteral("worldPicker"), "currentIndex").toInt(), world);
    }

    void lockedWorldDoesNothing()
    {
        // World 1 all but its last mission, and one mission of world 2 itself.
        UI(startReturning(range(0, 11) << 12));
        UI(press(QStringLiteral("mission_3")));
        const QString code = ui->studio().code();
        UI(openSheet(QStringLiteral("mapButton"), QStringLiteral("mapSheet")));

        QCOMPARE(ui->text(QStringLiteral("exploreButton_1")), QStringLiteral("Explore"));
        QCOMPARE(ui->text(QStringLiteral("exploreButton_2")), QStringLiteral("Locked"));
        QVERIFY(!ui->isEnabled(QStringLiteral("exploreButton_2")));
        QCOMPARE(ui->text(QStringLiteral("worldSummary_1")),
                 QStringLiteral("5 / 6 badges \u00b7 Reward: Blue lagoon canvas"));
        QCOMPARE(ui->text(QStringLiteral("worldSummary_2")),
                 QStringLiteral("1 / 6 badges \u00b7 Reward: Lavender dream canvas"));
        QCOMPARE(ui->property(QStringLiteral("worldProgress_2"), "value").toDouble(), 1.0);

        UI(press(QStringLiteral("exploreButton_2"), UiHarness::Require::Anything));
        QTest::qWait(50);
        QCOMPARE(ui->studio().mission(), 3);
        QCOMPARE(ui->studio().code(), code);
        QVERIFY(ui->studio().map());
        QVERIFY(ui->isSheetOpen(QStringLiteral("mapSheet")));

        // Done leaves the mission and the code as they were.
        UI(press(QStringLiteral("mapDoneButton")));
        UI(ui->waitForSheet(QStringLiteral("mapSheet"), false));
        QCOMPARE(ui->studio().mission(), 3);
        QCOMPARE(ui->studio().code(), code);
    }

    // ---- Treasure shelf

    void shelfSummaryAndBadges_data()
    {
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<QString>("summary");
        QTest::addColumn<QString>("royal");
        const QString locked = QStringLiteral("\U0001F451 Earn 3 badges to unlock Your Majesty.");
        const QString unlocked =
            QStringLiteral("\U0001F451 Your Majesty is unlocked. Choose your royal turtle in the studio!");
        QTest::newRow("none") << QList<qint64>{} << QStringLiteral("Curious Coder \u00b7 0 XP \u00b7 0 badges")
                              << locked;
        QTest::newRow("two") << QList<qint64>{0, 1} << QStringLiteral("Curious Coder \u00b7 200 XP \u00b7 2 badges")
                             << locked;
        QTest::newRow("three") << QList<qint64>{0, 1, 7}
                               << QStringLiteral("Curious Coder \u00b7 300 XP \u00b7 3 badges") << unlocked;
        QTest::newRow("all") << range(0, 30) << QStringLiteral("Marble Cove Master \u00b7 3000 XP \u00b7 30 badges")
                             << unlocked;
    }

    void shelfSummaryAndBadges()
    {
        QFETCH(QList<qint64>, completed);
        QFETCH(QString, summary);
        QFETCH(QString, royal);
        UI(startReturning(completed));
        UI(openSheet(QStringLiteral("treasuresButton"), QStringLiteral("collectionSheet")));

        QCOMPARE(ui->text(QStringLiteral("treasuresTitle")), QStringLiteral("Ada\u2019s treasure shelf"));
        QCOMPARE(ui->text(QStringLiteral("treasureSummary")), summary);
        QCOMPARE(ui->text(QStringLiteral("royalCompanionLine")), royal);
        for (int i = 0; i < 30; ++i) {
            const QString expected = completed.contains(i) ? QStringLiteral("Earned!") : QStringLiteral("Mission %1").arg(i + 1);
            QCOMPARE(ui->text(QStringLiteral("badgeState_%1").arg(i)), expected);
        }
        // Badges are for looking at: a click changes nothing.
        UI(press(QStringLiteral("badge_4"), UiHarness::Require::Anything));
        QCOMPARE(ui->studio().mission(), 0);
        QVERIFY(ui->isSheetOpen(QStringLiteral("collectionSheet")));
    }

    void choosingAvailableCanvas()
    {
        UI(startReturning(range(0, 6)));
        QCOMPARE(ui->studio().theme(), 0);
        UI(openSheet(QStringLiteral("treasuresButton"), QStringLiteral("collectionSheet")));
        QCOMPARE(ui->property(QStringLiteral("canvasMark_0"), "name").toString(), QStringLiteral("checkmark.seal.fill"));
        QCOMPARE(ui->text(QStringLiteral("canvasState_1")), QStringLiteral("Use this canvas"));

        UI(press(QStringLiteral("canvasCard_1")));
        QCOMPARE(ui->studio().theme(), 1);
        QCOMPARE(ui->store().integer(QStringLiteral("theme")), 1);
        QVERIFY(ui->isSheetOpen(QStringLiteral("collectionSheet")));
        QCOMPARE(ui->property(QStringLiteral("canvasMark_1"), "name").toString(), QStringLiteral("checkmark.seal.fill"));
        QCOMPARE(ui->property(QStringLiteral("canvasMark_0"), "name").toString(), QStringLiteral("paintpalette.fill"));
        QCOMPARE(ui->property(QStringLiteral("canvas"), "background").value<QColor>(), themes().at(1).color);

        // And back to the first canvas.
        UI(press(QStringLiteral("canvasCard_0")));
        QCOMPARE(ui->studio().theme(), 0);
        QCOMPARE(ui->store().integer(QStringLiteral("theme")), 0);
        QCOMPARE(ui->property(QStringLiteral("canvas"), "background").value<QColor>(), themes().at(0).color);
    }

    void lockedCanvasDoesNothing()
    {
        UI(startReturning(range(0, 6)));
        UI(openSheet(QStringLiteral("treasuresButton"), QStringLiteral("collectionSheet")));
        QCOMPARE(ui->text(QStringLiteral("canvasState_2")), QStringLiteral("Unlock at 12 badges"));
        QCOMPARE(ui->text(QStringLiteral("canvasState_5")), QStringLiteral("Unlock at 30 badges"));
        QVERIFY(!ui->isEnabled(QStringLiteral("canvasCard_2")));

        UI(press(QStringLiteral("canvasCard_2"), UiHarness::Require::Anything));
        QTest::qWait(50);
        QCOMPARE(ui->studio().theme(), 0);
        QCOMPARE(ui->store().integer(QStringLiteral("theme")), 0);
        QCOMPARE(ui->property(QStringLiteral("canvasMark_2"), "name").toString(), QStringLiteral("paintpalette.fill"));
        QCOMPARE(ui->property(QStringLiteral("canvas"), "background").value<QColor>(), themes().at(0).color);
        QVERIFY(ui->isSheetOpen(QStringLiteral("collectionSheet")));

        UI(press(QStringLiteral("treasuresDoneButton")));
        UI(ui->waitForSheet(QStringLiteral("collectionSheet"), false));
        QVERIFY(!ui->studio().collection());
    }

    // ---- Gallery

    void emptyGallery()
    {
        UI(startReturning());
        UI(openSheet(QStringLiteral("galleryButton"), QStringLiteral("gallerySheet")));
        QCOMPARE(ui->text(QStringLiteral("galleryTitle")), QStringLiteral("Made by Ada"));
        QVERIFY(ui->isShown(QStringLiteral("galleryEmptyState")));
        QVERIFY(!ui->isShown(QStringLiteral("creationGrid")));
        QCOMPARE(ui->property(QStringLiteral("creationGrid"), "count").toInt(), 0);
        QVERIFY(!ui->find(QStringLiteral("creationCard_0")));

        UI(press(QStringLiteral("goToStudioButton")));
        UI(ui->waitForSheet(QStringLiteral("gallerySheet"), false));
        QVERIFY(!ui->studio().gallery());
    }

    void threeCreationsFillTwoRows()
    {
        const QList<Stroke> square{line({0, 0}, {0, -300}), line({0, -300}, {300, -300}, QStringLiteral("pink"))};
        UI(startReturning({}, {creation(QStringLiteral("Newest"), 2, square), creation(QStringLiteral("Middle"), 99),
                               creation(QStringLiteral("Oldest"), -4)}));
        UI(openSheet(QStringLiteral("galleryButton"), QStringLiteral("gallerySheet")));
        QVERIFY(!ui->isShown(QStringLiteral("galleryEmptyState")));
        QVERIFY(ui->isShown(QStringLiteral("creationGrid")));

        QQuickItem *first = ui->item(QStringLiteral("creationCard_0"));
        QQuickItem *second = ui->item(QStringLiteral("creationCard_1"));
        QQuickItem *third = ui->item(QStringLiteral("creationCard_2"));
        QVERIFY(first && second && third);
        QCOMPARE(corner(second).y(), corner(first).y());
        QVERIFY(corner(second).x() >= corner(first).x() + first->width());
        QCOMPARE(corner(third).x(), corner(first).x());
        QVERIFY(corner(third).y() >= corner(first).y() + first->height());
        QVERIFY(!ui->find(QStringLiteral("creationCard_3")));

        QCOMPARE(ui->text(QStringLiteral("creationTitle_0")), QStringLiteral("Newest"));
        QCOMPARE(ui->text(QStringLiteral("creationTitle_1")), QStringLiteral("Middle"));
        QCOMPARE(ui->text(QStringLiteral("creationTitle_2")), QStringLiteral("Oldest"));
        QCOMPARE(ui->text(QStringLiteral("creationDate_0")),
                 CreationModel::dateText(QDateTime(QDate(2024, 3, 5), QTime(14, 7), Qt::UTC)));

        // Each thumbnail shows its own strokes, fitted to themselves, on its own canvas colour,
        // with a theme index outside the table clamped to its nearest end.
        const QString thumbnail = QStringLiteral("creationThumbnail_%1");
        QCOMPARE(ui->property(thumbnail.arg(0), "strokes").value<QList<Stroke>>(), square);
        QCOMPARE(ui->property(thumbnail.arg(0), "bounds").value<QList<Stroke>>(), square);
        QVERIFY(ui->property(thumbnail.arg(0), "ghost").value<QList<Stroke>>().isEmpty());
        QCOMPARE(ui->property(thumbnail.arg(0), "grid").toBool(), false);
        QCOMPARE(ui->property(thumbnail.arg(0), "hasPoint").toBool(), false);
        QCOMPARE(ui->property(thumbnail.arg(0), "background").value<QColor>(), themes().at(2).color);
        QCOMPARE(ui->property(thumbnail.arg(1), "background").value<QColor>(), themes().last().color);
        QCOMPARE(ui->property(thumbnail.arg(2), "background").value<QColor>(), themes().first().color);
        QVERIFY(ui->property(thumbnail.arg(1), "strokes").value<QList<Stroke>>().isEmpty());
        QCOMPARE(ui->item(thumbnail.arg(0))->height(), 180.0);
    }

    void openingCreation()
    {
        const QString code = QStringLiteral("color blue\nforward 60\nright 90\nforward 60\n");
        const QList<Stroke> drawn{line({0, 0}, {0, -60}), line({0, -60}, {60, -60})};
        UI(startReturning({}, {creation(QStringLiteral("Other"), 0), creation(QStringLiteral("Corner"), 3, drawn, 2, code)}));
        UI(openSheet(QStringLiteral("galleryButton"), QStringLiteral("gallerySheet")));

        UI(press(QStringLiteral("creationCard_1")));
        UI(ui->waitForSheet(QStringLiteral("gallerySheet"), false));
        QVERIFY(!ui->studio().gallery());
        QVERIFY(ui->studio().free());
        QCOMPARE(ui->studio().code(), code);
        QCOMPARE(ui->studio().turtle(), 2);
        QCOMPARE(ui->studio().theme(), 3);
        QCOMPARE(ui->studio().strokes().size(), 2);
        QCOMPARE(ui->store().string(QStringLiteral("freeCode")).value_or(QString()), code);
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("Opened \u2018Corner\u2019. Remix it and save a new copy."));
        QCOMPARE(ui->property(QStringLiteral("canvas"), "background").value<QColor>(), themes().at(3).color);
    }

    // Hundreds of creations: only the cards in sight exist, and the last one is reached by scrolling.
    void manyCreationsAreBuiltLazily()
    {
        QList<Creation> many;
        for (int i = 0; i < 300; ++i)
            many.append(creation(QStringLiteral("Drawing %1").arg(i), i % 6, {line({0, 0}, {double(i), -100})}));
        UI(startReturning({}, many));
        UI(openSheet(QStringLiteral("galleryButton"), QStringLiteral("gallerySheet")));

        QQuickItem *grid = ui->item(QStringLiteral("creationGrid"));
        QVERIFY(grid);
        const auto built = [&] {
            int cards = 0;
            for (QQuickItem *cell : grid->property("contentItem").value<QQuickItem *>()->childItems())
                cards += cell->objectName().isEmpty() && !cell->childItems().isEmpty()
                         && cell->childItems().constFirst()->objectName().startsWith(QStringLiteral("creationCard_"));
            return cards;
        };
        const auto lastBuilt = [&] {
            int last = -1;
            for (int i = 0; i < 300; ++i) {
                if (ui->find(QStringLiteral("creationCard_%1").arg(i)))
                    last = i;
            }
            return last;
        };
        QVERIFY2(built() > 0 && built() < 20, qPrintable(QString::number(built())));
        const int firstLast = lastBuilt();

        // A few turns of the mouse wheel bring new cards in...
        const QPoint middle = grid->mapToScene(QPointF(grid->width() / 2, grid->height() / 2)).toPoint();
        for (int turn = 0; turn < 40; ++turn) {
            QWheelEvent wheel(middle, ui->window()->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            wheel.setTimestamp(ulong(1000 + 100 * turn));
            QCoreApplication::sendEvent(ui->window(), &wheel);
            QTest::qWait(16);
        }
        QVERIFY(grid->property("contentY").toReal() > 0);
        QVERIFY(QTest::qWaitFor([&] { return lastBuilt() > firstLast; }));
        QVERIFY2(built() < 20, qPrintable(QString::number(built())));

        // ...and dragging the scroll bar's handle to the bottom reaches the last one.
        QQuickItem *bar = ui->item(QStringLiteral("creationScrollBar"));
        QVERIFY(bar);
        const qreal handleY = bar->height() * (bar->property("position").toReal() + bar->property("size").toReal() / 2);
        const QPoint grab = bar->mapToScene(QPointF(bar->width() / 2, handleY)).toPoint();
        const QPoint bottom = bar->mapToScene(QPointF(bar->width() / 2, bar->height() + 40)).toPoint();
        QTest::mousePress(ui->window(), Qt::LeftButton, Qt::NoModifier, grab);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(ui->window(), grab + (bottom - grab) * step / 10);
        QTest::mouseRelease(ui->window(), Qt::LeftButton, Qt::NoModifier, bottom);
        settle();
        QVERIFY(ui->find(QStringLiteral("creationCard_299")));
        QVERIFY(!ui->find(QStringLiteral("creationCard_0")));
        QVERIFY2(built() < 20, qPrintable(QString::number(built())));

        UI(press(QStringLiteral("creationCard_299")));
        UI(ui->waitForSheet(QStringLiteral("gallerySheet"), false));
        QCOMPARE(ui->studio().code(), many.last().code);
        QCOMPARE(ui->studio().theme(), 299 % 6);
        QCOMPARE(ui->studio().message(), QStringLiteral("Opened \u2018Drawing 299\u2019. Remix it and save a new copy."));
    }

    void dateInTheUserLocale_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("expected");
        QTest::newRow("en_US") << QStringLiteral("en_US") << QStringLiteral("Mar 5, 2024, 2:07 PM");
        QTest::newRow("de_DE") << QStringLiteral("de_DE") << QStringLiteral("5. März 2024, 14:07");
        QTest::newRow("C") << QStringLiteral("C") << QStringLiteral("5 Mar 2024, 14:07");
    }

    void dateInTheUserLocale()
    {
        QFETCH(QString, locale);
        QFETCH(QString, expected);
        const QDateTime local(QDate(2024, 3, 5), QTime(14, 7, 33));
        QCOMPARE(CreationModel::dateText(local, QLocale(locale)), expected);
    }

    // ---- Handbook

    void handbookEntryAppendsItsExample_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("example");
        const QStringList examples{
            QStringLiteral("forward 100"),
            QStringLiteral("back 50"),
            QStringLiteral("right 90"),
            QStringLiteral("left 90"),
            QStringLiteral("repeat 4 [forward 80 right 90]"),
            QStringLiteral("color pink"),
            QStringLiteral("width 8"),
            QStringLiteral("penup"),
            QStringLiteral("pendown"),
            QStringLiteral("home"),
            QStringLiteral("setheading 90"),
            QStringLiteral("clear"),
            QStringLiteral("to square\n  repeat 4 [forward 80 right 90]\nend\nsquare"),
            QStringLiteral("; This is a note to myself"),
        };
        for (int i = 0; i < examples.size(); ++i) {
            QTest::addRow("entry %d after code", i + 1) << QStringLiteral("forward 50") << i << examples.at(i);
            QTest::addRow("entry %d after a line break", i + 1) << QStringLiteral("right 45\n") << i << examples.at(i);
        }
        QTest::newRow("into empty code") << QString() << 0 << examples.at(0);
    }

    void handbookEntryAppendsItsExample()
    {
        QFETCH(QString, before);
        QFETCH(int, entry);
        QFETCH(QString, example);
        UI(startReturning());
        ui->studio().setCode(before);
        UI(openSheet(QStringLiteral("handbookSidebarButton"), QStringLiteral("guideSheet")));
        const QString name = QStringLiteral("guideEntry_%1").arg(entry);
        QCOMPARE(ui->text(QStringLiteral("guideExample_%1").arg(entry)), example);

        UI(press(name));
        const QString expected = before + (before.endsWith(u'\n') ? QString() : QStringLiteral("\n")) + example + u'\n';
        QCOMPARE(ui->studio().code(), expected);
        QCOMPARE(ui->store().string(QStringLiteral("code0")).value_or(QString()), expected);
        QVERIFY(!ui->studio().guide());
        UI(ui->waitForSheet(QStringLiteral("guideSheet"), false));
        QVERIFY(!ui->studio().running());
        QCOMPARE(ui->text(QStringLiteral("codeEditor")), expected);
    }

    void handbookExplanations_data()
    {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("explanation");
        const QStringList explanations{
            QStringLiteral("Move 100 steps in the direction your turtle faces. FD works too."),
            QStringLiteral("Move backward 50 steps without turning. Short name: BK."),
            QStringLiteral("Turn clockwise, staying in the same place. 90 degrees is a square corner. RT works too."),
            QStringLiteral("Turn the other way. Short name: LT."),
            QStringLiteral("Do everything inside the brackets four times. This draws a square."),
            QStringLiteral("Choose pink, purple, blue, green, orange, yellow, red, white, or black."),
            QStringLiteral("Make your next lines thicker. Choose a width from 1 to 20."),
            QStringLiteral("Lift your pen. Movement leaves no line. Short name: PU."),
            QStringLiteral("Put your pen down to draw again. Short name: PD."),
            QStringLiteral("Return to the start and face up. Lift the pen first if you don't want a line home."),
            QStringLiteral("Face a direction: 0 is up, 90 right, 180 down, 270 left. Short name: SETH."),
            QStringLiteral("Clear the drawing and return home. Your code stays in the editor. Short name: CS."),
            QStringLiteral("Teach your turtle a named recipe. TO begins it, END finishes it, and the name runs it. "
                           "Put recipes outside loops. Recipes can call other recipes, but cannot call themselves."),
            QStringLiteral("A semicolon starts a comment. Your turtle ignores the rest of that line."),
        };
        for (int i = 0; i < explanations.size(); ++i)
            QTest::addRow("entry %d", i + 1) << i << explanations.at(i);
    }

    void handbookExplanations()
    {
        QFETCH(int, entry);
        QFETCH(QString, explanation);
        UI(startReturning());
        UI(openSheet(QStringLiteral("handbookSidebarButton"), QStringLiteral("guideSheet")));
        QCOMPARE(ui->text(QStringLiteral("guideTitle")), QStringLiteral("Coder\u2019s handbook"));
        QCOMPARE(ui->text(QStringLiteral("guideExplanation_%1").arg(entry)), explanation);
        QVERIFY(!ui->find(QStringLiteral("guideEntry_14")));
    }

    void handbookWaitsWhileRunning()
    {
        UI(startReturning());
        ui->studio().setSpeed(Studio::slowestSpeed);
        const QString code = QStringLiteral("repeat 40 [forward 10 right 9]");
        ui->studio().setCode(code);
        UI(press(QStringLiteral("runButton")));
        QVERIFY(ui->studio().running());
        ui->studio().setGuide(true);
        UI(ui->waitForSheet(QStringLiteral("guideSheet"), true));

        for (int i = 0; i < 14; ++i)
            QVERIFY2(!ui->isEnabled(QStringLiteral("guideEntry_%1").arg(i)), qPrintable(QString::number(i)));
        UI(press(QStringLiteral("guideEntry_0"), UiHarness::Require::Anything));
        UI(press(QStringLiteral("guideEntry_13"), UiHarness::Require::Anything));
        QTest::qWait(50);
        QVERIFY(ui->studio().running());
        QCOMPARE(ui->studio().code(), code);
        QVERIFY(ui->isSheetOpen(QStringLiteral("guideSheet")));

        UI(press(QStringLiteral("guideDoneButton")));
        UI(ui->waitForSheet(QStringLiteral("guideSheet"), false));
        QCOMPARE(ui->studio().code(), code);
        ui->studio().stop();
    }
};

QTEST_MAIN(SideScreensTest)
#include "tst_side_screens.moc"
