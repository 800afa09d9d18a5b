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

using namespace Qt::StringLiterals;

namespace {

Stroke line(QPointF from, QPointF to, const QString &color = u"blue"_s)
{
    return Stroke{from, to, color, 4};
}

Creation creation(const QString &title, int theme, const QList<Stroke> &strokes = {}, int turtle = 0,
                  const QString &code = u"forward 10\n"_s)
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

QColor canvasColour(int theme)
{
    return themes().at(theme).color;
}

} // namespace

class SideScreensTest : public UiTest
{
    Q_OBJECT

    QString mark(int canvas) const
    {
        return ui->property(u"canvasMark_%1"_s.arg(canvas), "name").toString();
    }

    QColor background(const QString &name) const { return ui->property(name, "background").value<QColor>(); }

private slots:
    // ---- World map

    void exploreSelectsFirstUnearnedMission_data()
    {
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<int>("world");
        QTest::addColumn<int>("expected");
        QTest::newRow("first world complete starts over") << range(0, 6) << 0 << 0;
        QTest::newRow("first, second and fourth earned") << (range(0, 6) << 6 << 7 << 9) << 1 << 8;
        QTest::newRow("last world") << (range(0, 25) << 26) << 4 << 25;
    }

    void exploreSelectsFirstUnearnedMission()
    {
        QFETCH(QList<qint64>, completed);
        QFETCH(int, world);
        QFETCH(int, expected);
        UI(startReturning(completed));
        UI(ui->clickForSheet(u"mapButton"_s, u"mapSheet"_s));

        const QString explore = u"exploreButton_%1"_s.arg(world);
        QCOMPARE(ui->text(explore), u"Explore"_s);
        UI(ui->click(explore));
        QCOMPARE(ui->studio().mission(), expected);
        QVERIFY(!ui->studio().free());
        UI(ui->waitForSheet(u"mapSheet"_s, false));
        // The sidebar follows the chosen mission to its world.
        QCOMPARE(ui->property(u"worldPicker"_s, "currentIndex").toInt(), world);
    }

    void lockedWorldDoesNothing()
    {
        // World 1 all but its last mission, and one mission of world 2 itself.
        UI(startReturning(range(0, 11) << 12));
        UI(ui->click(u"mission_3"_s));
        const QString code = ui->studio().code();
        UI(ui->clickForSheet(u"mapButton"_s, u"mapSheet"_s));

        QCOMPARE(ui->text(u"exploreButton_2"_s), u"Locked"_s);
        QVERIFY(!ui->isEnabled(u"exploreButton_2"_s));
        QCOMPARE(ui->text(u"worldSummary_1"_s), u"5 / 6 badges \u00b7 Reward: Blue lagoon canvas"_s);
        QCOMPARE(ui->text(u"worldSummary_2"_s), u"1 / 6 badges \u00b7 Reward: Lavender dream canvas"_s);
        QCOMPARE(ui->property(u"worldProgress_2"_s, "value").toDouble(), 1.0);

        UI(ui->click(u"exploreButton_2"_s, UiHarness::Require::Anything));
        QTest::qWait(50);
        QVERIFY(ui->isSheetOpen(u"mapSheet"_s));

        // Done leaves the mission and the code as they were.
        UI(ui->clickForSheet(u"mapDoneButton"_s, u"mapSheet"_s, false));
        QCOMPARE(ui->studio().mission(), 3);
        QCOMPARE(ui->studio().code(), code);
    }

    // ---- Treasure shelf

    void shelfSummaryAndBadges_data()
    {
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<QString>("summary");
        QTest::addColumn<QString>("royal");
        const QString locked = u"\U0001F451 Earn 3 badges to unlock Your Majesty."_s;
        const QString unlocked = u"\U0001F451 Your Majesty is unlocked. Choose your royal turtle in the studio!"_s;
        QTest::newRow("one") << QList<qint64>{1} << u"Curious Coder \u00b7 100 XP \u00b7 1 badge"_s << locked;
        QTest::newRow("three") << QList<qint64>{0, 1, 7} << u"Curious Coder \u00b7 300 XP \u00b7 3 badges"_s << unlocked;
        QTest::newRow("all") << range(0, 30) << u"Marble Cove Master \u00b7 3000 XP \u00b7 30 badges"_s << unlocked;
    }

    void shelfSummaryAndBadges()
    {
        QFETCH(QList<qint64>, completed);
        QFETCH(QString, summary);
        QFETCH(QString, royal);
        UI(startReturning(completed));
        UI(ui->clickForSheet(u"treasuresButton"_s, u"collectionSheet"_s));

        QCOMPARE(ui->text(u"treasuresTitle"_s), u"Ada\u2019s treasure shelf"_s);
        QCOMPARE(ui->text(u"treasureSummary"_s), summary);
        QCOMPARE(ui->text(u"royalCompanionLine"_s), royal);
        for (int i = 0; i < 30; ++i) {
            const QString expected = completed.contains(i) ? u"Earned!"_s : u"Mission %1"_s.arg(i + 1);
            QCOMPARE(ui->text(u"badgeState_%1"_s.arg(i)), expected);
        }
        // Badges are for looking at: a click changes nothing.
        UI(ui->click(u"badge_4"_s, UiHarness::Require::Anything));
        QCOMPARE(ui->studio().mission(), 0);
        QVERIFY(ui->isSheetOpen(u"collectionSheet"_s));
    }

    // Six badges: the second canvas can be chosen, the third cannot yet.
    void choosingCanvas()
    {
        UI(startReturning(range(0, 6)));
        UI(ui->clickForSheet(u"treasuresButton"_s, u"collectionSheet"_s));
        QCOMPARE(mark(0), u"checkmark.seal.fill"_s);
        QCOMPARE(ui->text(u"canvasState_1"_s), u"Use this canvas"_s);
        QCOMPARE(ui->text(u"canvasState_2"_s), u"Unlock at 12 badges"_s);
        QCOMPARE(ui->text(u"canvasState_5"_s), u"Unlock at 30 badges"_s);
        QVERIFY(!ui->isEnabled(u"canvasCard_2"_s));

        UI(ui->click(u"canvasCard_2"_s, UiHarness::Require::Anything));
        QTest::qWait(50);
        QCOMPARE(ui->studio().theme(), 0);
        QCOMPARE(mark(2), u"paintpalette.fill"_s);
        QCOMPARE(background(u"canvas"_s), canvasColour(0));

        UI(ui->click(u"canvasCard_1"_s));
        QCOMPARE(ui->studio().theme(), 1);
        QCOMPARE(ui->store().integer(u"theme"_s), 1);
        QVERIFY(ui->isSheetOpen(u"collectionSheet"_s));
        QCOMPARE(mark(1), u"checkmark.seal.fill"_s);
        QCOMPARE(mark(0), u"paintpalette.fill"_s);
        QCOMPARE(background(u"canvas"_s), canvasColour(1));

        UI(ui->click(u"canvasCard_0"_s));
        QCOMPARE(ui->store().integer(u"theme"_s), 0);
        QCOMPARE(background(u"canvas"_s), canvasColour(0));

        UI(ui->clickForSheet(u"treasuresDoneButton"_s, u"collectionSheet"_s, false));
        QVERIFY(!ui->studio().collection());
    }

    // ---- Gallery

    void emptyGallery()
    {
        UI(startReturning());
        UI(ui->clickForSheet(u"galleryButton"_s, u"gallerySheet"_s));
        QCOMPARE(ui->text(u"galleryTitle"_s), u"Made by Ada"_s);
        QVERIFY(ui->isShown(u"galleryEmptyState"_s));
        QVERIFY(!ui->isShown(u"creationGrid"_s));
        QVERIFY(!ui->find(u"creationCard_0"_s));

        UI(ui->clickForSheet(u"goToStudioButton"_s, u"gallerySheet"_s, false));
        QVERIFY(!ui->studio().gallery());
    }

    // Three creations fill two rows of cards; a card opens its creation in free play.
    void creationCards()
    {
        const QString code = u"color blue\nforward 60\nright 90\nforward 60\n"_s;
        const QList<Stroke> square{line({0, 0}, {0, -300}), line({0, -300}, {300, -300}, u"pink"_s)};
        UI(startReturning({}, encodeCreations({creation(u"Newest"_s, 2, square, 2, code), creation(u"Middle"_s, 99),
                                                creation(u"Oldest"_s, -4)})));
        UI(ui->clickForSheet(u"galleryButton"_s, u"gallerySheet"_s));
        QVERIFY(QQuickTest::qWaitForPolish(ui->window())); // the grid places its cards only then
        QVERIFY(!ui->isShown(u"galleryEmptyState"_s));

        QQuickItem *first = ui->item(u"creationCard_0"_s), *second = ui->item(u"creationCard_1"_s),
                   *third = ui->item(u"creationCard_2"_s);
        QVERIFY(first && second && third);
        QCOMPARE(corner(second).y(), corner(first).y());
        QVERIFY(corner(second).x() >= corner(first).x() + first->width());
        QCOMPARE(corner(third).x(), corner(first).x());
        QVERIFY(corner(third).y() >= corner(first).y() + first->height());
        QVERIFY(!ui->find(u"creationCard_3"_s));

        QCOMPARE(ui->text(u"creationTitle_1"_s), u"Middle"_s);
        QCOMPARE(ui->text(u"creationTitle_2"_s), u"Oldest"_s);
        QCOMPARE(ui->text(u"creationDate_0"_s), CreationModel::dateText(QDateTime(QDate(2024, 3, 5), QTime(14, 7), Qt::UTC)));

        // Each thumbnail shows its own strokes, fitted to themselves, on its own canvas colour,
        // with a theme index outside the table clamped to its nearest end.
        const QString thumbnail = u"creationThumbnail_%1"_s;
        const auto strokes = [&](int card, const char *which) {
            return ui->property(thumbnail.arg(card), which).value<QList<Stroke>>();
        };
        QCOMPARE(strokes(0, "strokes"), square);
        QCOMPARE(strokes(0, "bounds"), square);
        QVERIFY(strokes(0, "ghost").isEmpty() && strokes(1, "strokes").isEmpty());
        QVERIFY(!ui->property(thumbnail.arg(0), "grid").toBool() && !ui->property(thumbnail.arg(0), "hasPoint").toBool());
        QCOMPARE(background(thumbnail.arg(0)), canvasColour(2));
        QCOMPARE(background(thumbnail.arg(1)), themes().last().color);
        QCOMPARE(background(thumbnail.arg(2)), themes().first().color);

        UI(ui->clickForSheet(u"creationCard_0"_s, u"gallerySheet"_s, false));
        QVERIFY(ui->studio().free());
        QCOMPARE(ui->studio().code(), code);
        QCOMPARE(ui->studio().turtle(), 2);
        QCOMPARE(ui->studio().theme(), 2);
        QCOMPARE(ui->studio().strokes().size(), 2);
        QCOMPARE(ui->store().string(u"freeCode"_s).value_or(QString()), code);
        QCOMPARE(ui->text(u"statusLine"_s), u"Opened \u2018Newest\u2019. Remix it and save a new copy."_s);
        QCOMPARE(background(u"canvas"_s), canvasColour(2));
    }

    // Hundreds of creations: only the cards in sight exist, and the last one is reached by scrolling.
    void manyCreationsAreBuiltLazily()
    {
        QList<Creation> many;
        for (int i = 0; i < 300; ++i)
            many.append(creation(u"Drawing %1"_s.arg(i), i % 6, {line({0, 0}, {double(i), -100})}));
        UI(startReturning({}, encodeCreations(many)));
        UI(ui->clickForSheet(u"galleryButton"_s, u"gallerySheet"_s));
        QVERIFY(QQuickTest::qWaitForPolish(ui->window()));

        QQuickItem *grid = ui->item(u"creationGrid"_s);
        QVERIFY(grid);
        const auto built = [&] {
            int cards = 0;
            for (QQuickItem *cell : grid->property("contentItem").value<QQuickItem *>()->childItems())
                cards += cell->objectName().isEmpty() && !cell->childItems().isEmpty()
                         && cell->childItems().constFirst()->objectName().startsWith(u"creationCard_"_s);
            return cards;
        };
        const auto lastBuilt = [&] {
            int last = -1;
            for (int i = 0; i < 300; ++i)
                last = ui->find(u"creationCard_%1"_s.arg(i)) ? i : last;
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
        QQuickItem *bar = ui->item(u"creationScrollBar"_s);
        QVERIFY(bar);
        const qreal handleY = bar->height() * (bar->property("position").toReal() + bar->property("size").toReal() / 2);
        const QPoint grab = bar->mapToScene(QPointF(bar->width() / 2, handleY)).toPoint();
        const QPoint bottom = bar->mapToScene(QPointF(bar->width() / 2, bar->height() + 40)).toPoint();
        QTest::mousePress(ui->window(), Qt::LeftButton, Qt::NoModifier, grab);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(ui->window(), grab + (bottom - grab) * step / 10);
        QTest::mouseRelease(ui->window(), Qt::LeftButton, Qt::NoModifier, bottom);
        QVERIFY(QQuickTest::qWaitForPolish(ui->window()));
        QVERIFY(ui->find(u"creationCard_299"_s));
        QVERIFY(!ui->find(u"creationCard_0"_s));
        QVERIFY2(built() < 20, qPrintable(QString::number(built())));

        // The card reached opens its own creation, not one of those built first.
        UI(ui->clickForSheet(u"creationCard_299"_s, u"gallerySheet"_s, false));
        QCOMPARE(ui->studio().theme(), 299 % 6);
        QCOMPARE(ui->studio().message(), u"Opened \u2018Drawing 299\u2019. Remix it and save a new copy."_s);
    }

    void dateInTheUserLocale()
    {
        const QDateTime local(QDate(2024, 3, 5), QTime(14, 7, 33));
        QCOMPARE(CreationModel::dateText(local, QLocale(u"en_US"_s)), u"Mar 5, 2024, 2:07 PM"_s);
        QCOMPARE(CreationModel::dateText(local, QLocale(u"de_DE"_s)), u"5. März 2024, 14:07"_s);
        QCOMPARE(CreationModel::dateText(local, QLocale(u"C"_s)), u"5 Mar 2024, 14:07"_s);
    }

    // ---- Handbook

    // Every entry shows its own example; a click adds it on a line of its own, whether or not the
    // code ends in a line break, and closes the sheet.
    void handbookEntryAppendsItsExample()
    {
        const QStringList examples{
            u"forward 100"_s, u"back 50"_s, u"right 90"_s, u"left 90"_s, u"repeat 4 [forward 80 right 90]"_s,
            u"color pink"_s, u"width 8"_s, u"penup"_s, u"pendown"_s, u"home"_s, u"setheading 90"_s, u"clear"_s,
            u"to square\n  repeat 4 [forward 80 right 90]\nend\nsquare"_s, u"; This is a note to myself"_s,
        };
        UI(startReturning());
        for (const auto &[before, entry] : {std::pair(u"forward 50"_s, 13), std::pair(u"right 45\n"_s, 6)}) {
            ui->studio().setCode(before);
            UI(ui->clickForSheet(u"handbookSidebarButton"_s, u"guideSheet"_s));
            for (int i = 0; i < examples.size(); ++i)
                QCOMPARE(ui->text(u"guideExample_%1"_s.arg(i)), examples.at(i));
            UI(ui->click(u"guideEntry_%1"_s.arg(entry)));
            const QString expected = before + (before.endsWith(u'\n') ? QString() : u"\n"_s) + examples.at(entry) + u'\n';
            QCOMPARE(ui->studio().code(), expected);
            QCOMPARE(ui->store().string(u"code0"_s), expected);
            UI(ui->waitForSheet(u"guideSheet"_s, false));
            QCOMPARE(ui->text(u"codeEditor"_s), expected);
        }
    }

    // The explanations' wording lives in one table in the QML: here every entry must show its
    // own, and nothing past the fourteenth.
    void handbookWaitsWhileRunning()
    {
        UI(startReturning());
        ui->studio().setSpeed(Studio::slowestSpeed);
        const QString code = u"repeat 40 [forward 10 right 9]"_s;
        ui->studio().setCode(code);
        UI(ui->click(u"runButton"_s));
        QVERIFY(ui->studio().running());
        ui->studio().setGuide(true);
        UI(ui->waitForSheet(u"guideSheet"_s, true));
        QCOMPARE(ui->text(u"guideTitle"_s), u"Coder\u2019s handbook"_s);
        QSet<QString> explanations;
        for (int i = 0; i < 14; ++i) {
            const QString name = u"guideExplanation_%1"_s.arg(i);
            QVERIFY2(ui->isShown(name) && !ui->text(name).isEmpty(), qPrintable(name));
            explanations.insert(ui->text(name));
            QVERIFY2(!ui->isEnabled(u"guideEntry_%1"_s.arg(i)), qPrintable(QString::number(i)));
        }
        QCOMPARE(explanations.size(), 14);
        QCOMPARE(ui->text(u"guideExplanation_13"_s), u"A semicolon starts a comment. Your turtle ignores the rest of that line."_s);
        QVERIFY(!ui->find(u"guideEntry_14"_s));

        UI(ui->click(u"guideEntry_0"_s, UiHarness::Require::Anything));
        UI(ui->click(u"guideEntry_13"_s, UiHarness::Require::Anything));
        QTest::qWait(50);
        QVERIFY(ui->studio().running());
        QVERIFY(ui->isSheetOpen(u"guideSheet"_s));

        UI(ui->clickForSheet(u"guideDoneButton"_s, u"guideSheet"_s, false));
        QCOMPARE(ui->studio().code(), code);
        ui->studio().stop();
    }
};

QTEST_MAIN(SideScreensTest)
#include "tst_side_screens.moc"
