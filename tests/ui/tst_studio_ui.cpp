// The studio window as a child uses it: real clicks and key presses on the real screens,
// with a real Studio on a temporary store. Any QML warning fails the test it happened in.
#include "UiHarness.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "curriculum/Worlds.h"

#include <QQmlComponent>
#include <QSignalSpy>
#include <QTest>

#include <memory>

// A harness step that must succeed; its reason is printed when it does not.
#define UI(step) QVERIFY2((step), ui->why())

namespace {

const QString nudge = QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint.");

const QStringList allSheets{
    QStringLiteral("playerSettingsSheet"), QStringLiteral("welcomeSheet"), QStringLiteral("companionSettingsSheet"),
    QStringLiteral("collectionSheet"),     QStringLiteral("celebrationSheet"), QStringLiteral("gallerySheet"),
    QStringLiteral("savingSheet"),         QStringLiteral("guideSheet"),   QStringLiteral("mapSheet"),
};

QList<qint64> firstMissionsUpTo(int count)
{
    QList<qint64> done;
    for (int i = 0; i < count; ++i)
        done.append(i);
    return done;
}

} // namespace

class StudioUiTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> ui;

    // A returning child (the welcome flow stays closed) with these badges.
    bool startReturning(const QList<qint64> &completed = {})
    {
        ui->seedReturningPlayer();
        if (!completed.isEmpty())
            ui->seedCompleted(completed);
        return ui->start();
    }

    int borderWidth(const QString &name) const
    {
        const auto *border = ui->property(name, "border").value<QObject *>();
        return border ? border->property("width").toInt() : -1;
    }

    // Presses Run code and waits until the drawing has been carried out and judged.
    bool runToEnd()
    {
        QSignalSpy finished(&ui->studio(), &Studio::drawingFinished);
        if (!ui->click(QStringLiteral("runButton")))
            return false;
        return ui->waitFor([&] { return finished.count() == 1 && !ui->studio().running(); },
                           QStringLiteral("the run to finish"));
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

    // The guard itself: a broken binding must be noticed, or every other test proves less.
    void warningsAreCaught()
    {
        UI(startReturning());
        QQmlComponent broken(ui->window() ? qmlEngine(ui->window()) : nullptr);
        QVERIFY(broken.engine());
        broken.setData("import QtQuick\nItem { width: noSuchThing.width }", QUrl(QStringLiteral("qrc:/probe.qml")));
        std::unique_ptr<QObject> probe(broken.create());
        QVERIFY(probe);
        const QStringList warnings = UiHarness::takeWarnings();
        QVERIFY2(warnings.join(u'\n').contains(QStringLiteral("noSuchThing")), qPrintable(warnings.join(u'\n')));
    }

    void firstStartShowsWelcome_data()
    {
        QTest::addColumn<bool>("returning");
        QTest::addColumn<bool>("welcomeOpen");
        QTest::newRow("empty store") << false << true;
        QTest::newRow("returning child") << true << false;
    }

    void firstStartShowsWelcome()
    {
        QFETCH(bool, returning);
        QFETCH(bool, welcomeOpen);
        if (returning)
            ui->seedReturningPlayer();
        UI(ui->start());
        QCOMPARE(ui->studio().welcome(), welcomeOpen);
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), welcomeOpen));
        for (const QString &sheet : allSheets) {
            if (sheet != QStringLiteral("welcomeSheet"))
                QVERIFY2(!ui->isSheetOpen(sheet), qPrintable(sheet));
        }
        if (!welcomeOpen)
            return;
        // A first-run child can only leave the welcome flow by giving the names.
        ui->key(Qt::Key_Escape);
        UI(ui->click(QStringLiteral("experience"), UiHarness::Require::Anything)); // outside the sheet
        QTest::qWait(50);
        QVERIFY(ui->studio().welcome());
        QVERIFY(ui->isSheetOpen(QStringLiteral("welcomeSheet")));
    }

    void headerAndBanner_data()
    {
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<QString>("experience");
        QTest::addColumn<QString>("rank");
        QTest::addColumn<QString>("progress");
        QTest::addColumn<QString>("badge");
        QTest::newRow("fresh") << QList<qint64>{} << QStringLiteral("\u2726 0 XP") << QStringLiteral("Curious Coder")
                               << QStringLiteral("0 / 30 missions explored") << QStringLiteral("\u2713 +100 XP");
        QTest::newRow("three badges") << QList<qint64>{0, 1, 2} << QStringLiteral("\u2726 300 XP")
                                      << QStringLiteral("Curious Coder") << QStringLiteral("3 / 30 missions explored")
                                      << QStringLiteral("\u2713 Earned");
        QTest::newRow("mission 0 not among them") << QList<qint64>{7, 8} << QStringLiteral("\u2726 200 XP")
                                                  << QStringLiteral("Curious Coder")
                                                  << QStringLiteral("2 / 30 missions explored")
                                                  << QStringLiteral("\u2713 +100 XP");
        QTest::newRow("all thirty") << firstMissionsUpTo(30) << QStringLiteral("\u2726 3000 XP")
                                    << QStringLiteral("Marble Cove Master")
                                    << QStringLiteral("30 / 30 missions explored") << QStringLiteral("\u2713 Earned");
    }

    void headerAndBanner()
    {
        QFETCH(QList<qint64>, completed);
        QFETCH(QString, experience);
        QFETCH(QString, rank);
        QFETCH(QString, progress);
        QFETCH(QString, badge);
        UI(startReturning(completed));

        QCOMPARE(ui->text(QStringLiteral("experience")), experience);
        QCOMPARE(ui->text(QStringLiteral("rank")), rank);
        QCOMPARE(ui->text(QStringLiteral("progressText")), progress);
        QCOMPARE(ui->text(QStringLiteral("badgeCapsule")), badge);
        QCOMPARE(ui->text(QStringLiteral("worldTitle")), QStringLiteral("Ada\u2019S WORLD OF CODE"));
        QCOMPARE(ui->text(QStringLiteral("bannerKicker")), QStringLiteral("MISSION 1 OF 30  \u2022  TURTLE TRAIL"));
        QCOMPARE(ui->text(QStringLiteral("bannerTitle")), QStringLiteral("Baby steps"));
        QCOMPARE(ui->text(QStringLiteral("goalText")), missions().at(0).goal);
        QCOMPARE(ui->texts(QStringLiteral("profileButton")), QStringList{QStringLiteral("A")});
        QVERIFY(ui->isShown(QStringLiteral("badgeCapsule")));
        QCOMPARE(ui->text(QStringLiteral("codeEditor")), missions().at(0).starter);

        // Free play swaps the banner and hides the badge.
        UI(ui->click(QStringLiteral("freePlayButton")));
        QVERIFY(ui->studio().free());
        QCOMPARE(ui->text(QStringLiteral("bannerKicker")), QStringLiteral("YOUR IDEAS. YOUR RULES."));
        QCOMPARE(ui->text(QStringLiteral("bannerTitle")), QStringLiteral("The imagination station"));
        QVERIFY(!ui->isShown(QStringLiteral("badgeCapsule")));
        QVERIFY(!ui->isShown(QStringLiteral("targetSwitch")));
        QCOMPARE(ui->text(QStringLiteral("experience")), experience);
    }

    void solveAndMoveOn_data()
    {
        QTest::addColumn<int>("mission");
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<QString>("headline");
        QTest::addColumn<QString>("experienceAfter");
        QTest::addColumn<QString>("nextLabel");
        QTest::addColumn<QString>("kickerAfter");

        QTest::newRow("mission 1, first badge")
            << 0 << QList<qint64>{} << QStringLiteral("Look what you made!") << QStringLiteral("\u2726 100 XP")
            << QStringLiteral("Next adventure") << QStringLiteral("MISSION 2 OF 30  \u2022  TURTLE TRAIL");
        QTest::newRow("mission 1 again") << 0 << QList<qint64>{0} << QStringLiteral("You\u2019ve still got it!")
                                         << QStringLiteral("\u2726 100 XP") << QStringLiteral("Next adventure")
                                         << QStringLiteral("MISSION 2 OF 30  \u2022  TURTLE TRAIL");
        QTest::newRow("mission 3, a loop") << 2 << QList<qint64>{0, 1} << QStringLiteral("Look what you made!")
                                           << QStringLiteral("\u2726 300 XP") << QStringLiteral("Next adventure")
                                           << QStringLiteral("MISSION 4 OF 30  \u2022  TURTLE TRAIL");
        QTest::newRow("last of the first world")
            << 5 << firstMissionsUpTo(5) << QStringLiteral("Look what you made!") << QStringLiteral("\u2726 600 XP")
            << QStringLiteral("Next adventure") << QStringLiteral("MISSION 7 OF 30  \u2022  SHAPE CITY");
        QTest::newRow("the very last") << 29 << firstMissionsUpTo(29) << QStringLiteral("Look what you made!")
                                       << QStringLiteral("\u2726 3000 XP") << QStringLiteral("Explore free play")
                                       << QStringLiteral("YOUR IDEAS. YOUR RULES.");
    }

    void solveAndMoveOn()
    {
        QFETCH(int, mission);
        QFETCH(QList<qint64>, completed);
        QFETCH(QString, headline);
        QFETCH(QString, experienceAfter);
        QFETCH(QString, nextLabel);
        QFETCH(QString, kickerAfter);
        UI(startReturning(completed));
        if (mission != 0)
            ui->studio().select(mission); // arranged: the sidebar's own clicks are tested below
        QCOMPARE(ui->studio().mission(), mission);

        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(QStringLiteral("codeEditor"), missions().at(mission).solution));
        QCOMPARE(ui->studio().code(), missions().at(mission).solution);
        UI(ui->click(QStringLiteral("runButton")));
        UI(ui->waitForSheet(QStringLiteral("celebrationSheet"), true));
        QVERIFY(ui->studio().celebration());
        QVERIFY(!ui->studio().running());
        QCOMPARE(ui->text(QStringLiteral("celebrationHeadline")), headline);
        QCOMPARE(ui->text(QStringLiteral("nextAdventureButton")), nextLabel);
        QCOMPARE(ui->text(QStringLiteral("experience")), experienceAfter);
        QCOMPARE(ui->text(QStringLiteral("badgeCapsule")), QStringLiteral("\u2713 Earned"));

        UI(ui->click(QStringLiteral("nextAdventureButton")));
        UI(ui->waitForSheet(QStringLiteral("celebrationSheet"), false));
        QVERIFY(!ui->studio().celebration());
        QCOMPARE(ui->text(QStringLiteral("bannerKicker")), kickerAfter);
        if (mission + 1 < missions().size()) {
            const Mission &next = missions().at(mission + 1);
            QVERIFY(!ui->studio().free());
            QCOMPARE(ui->studio().mission(), mission + 1);
            QCOMPARE(ui->text(QStringLiteral("codeEditor")), next.starter);
            QCOMPARE(ui->text(QStringLiteral("bannerTitle")), next.title);
            QCOMPARE(ui->text(QStringLiteral("goalText")), next.goal);
            // The sidebar follows into the next mission's world and can select it there.
            const QString row = QStringLiteral("mission_%1").arg(mission + 1);
            QVERIFY2(ui->isShown(row), qPrintable(row));
            QVERIFY2(ui->isEnabled(row), "a badge earned on screen opens the next row");
            QCOMPARE(ui->property(row, "opacity").toReal(), 1.0);
            QCOMPARE(ui->property(QStringLiteral("worldPicker"), "currentIndex").toInt(), worldOf(mission + 1));
        } else {
            QVERIFY(ui->studio().free());
            QCOMPARE(ui->text(QStringLiteral("bannerTitle")), QStringLiteral("The imagination station"));
        }
    }

    void wrongDrawingEncourages_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("too short") << QStringLiteral("forward 50");
        QTest::newRow("two lines") << QStringLiteral("forward 100\nright 90\nforward 100");
        QTest::newRow("pen up") << QStringLiteral("penup\nforward 100");
    }

    void wrongDrawingEncourages()
    {
        QFETCH(QString, program);
        UI(startReturning());
        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(QStringLiteral("codeEditor"), program));
        QVERIFY(runToEnd());
        QCOMPARE(ui->text(QStringLiteral("statusLine")), nudge);
        QTest::qWait(100); // a celebration would already be on its way
        QVERIFY(!ui->studio().celebration());
        QVERIFY(!ui->isSheetOpen(QStringLiteral("celebrationSheet")));
        QCOMPARE(ui->text(QStringLiteral("experience")), QStringLiteral("\u2726 0 XP"));
        QCOMPARE(ui->text(QStringLiteral("badgeCapsule")), QStringLiteral("\u2713 +100 XP"));
        QVERIFY(!ui->isEnabled(QStringLiteral("mission_1")));
        // The drawing stays for the child to look at.
        QCOMPARE(ui->studio().code(), program);
    }

    void nothingToRun_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("empty editor") << QString();
        QTest::newRow("only a comment") << QStringLiteral("; just thinking");
    }

    void nothingToRun()
    {
        QFETCH(QString, program);
        UI(startReturning());
        UI(ui->replaceText(QStringLiteral("codeEditor"), program));
        QCOMPARE(ui->studio().code(), program);
        UI(ui->click(QStringLiteral("runButton")));
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("Add a command first. Try FORWARD 100."));
        QVERIFY(!ui->studio().running());
        QCOMPARE(ui->text(QStringLiteral("runButton")), QStringLiteral("Run code"));
        QVERIFY(ui->studio().strokes().isEmpty());
        QVERIFY(!ui->isEnabled(QStringLiteral("saveCreationButton")));
        QVERIFY(!ui->isEnabled(QStringLiteral("exportButton")));
    }

    void hints()
    {
        UI(startReturning());
        const Mission &mission = missions().at(0);
        QCOMPARE(ui->text(QStringLiteral("hintButton")), QStringLiteral("A little hint"));
        QVERIFY(!ui->isShown(QStringLiteral("hintText")));
        for (qsizetype i = 0; i < mission.hints.size(); ++i) {
            QVERIFY(ui->isEnabled(QStringLiteral("hintButton")));
            UI(ui->click(QStringLiteral("hintButton")));
            QVERIFY(ui->isShown(QStringLiteral("hintText")));
            QCOMPARE(ui->text(QStringLiteral("hintText")), mission.hints.at(i));
            QCOMPARE(ui->text(QStringLiteral("hintButton")), QStringLiteral("Next hint"));
        }
        QVERIFY2(!ui->isEnabled(QStringLiteral("hintButton")), "every hint is already shown");
        UI(ui->click(QStringLiteral("hintButton"), UiHarness::Require::Anything));
        QCOMPARE(ui->studio().hint(), int(mission.hints.size()));

        // The target switch puts the mission's drawing on the canvas as a ghost, and takes it away.
        const auto ghost = [&] { return ui->property(QStringLiteral("canvas"), "ghost").value<QList<Stroke>>(); };
        QVERIFY(ghost().isEmpty());
        UI(ui->click(QStringLiteral("targetSwitch")));
        QVERIFY(ui->studio().showTarget());
        QVERIFY(!ghost().isEmpty());
        QCOMPARE(ghost(), ui->studio().targetStrokes());
        UI(ui->click(QStringLiteral("targetSwitch")));
        QVERIFY(!ui->studio().showTarget());
        QVERIFY(ghost().isEmpty());
    }

    void stepProgress_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("three commands") << QStringLiteral("forward 50\nright 90\nforward 50")
                                        << QStringList{QStringLiteral("1 / 3 steps  \u00b7  FORWARD 50"),
                                                       QStringLiteral("2 / 3 steps  \u00b7  RIGHT 90"),
                                                       QStringLiteral("3 / 3 steps  \u00b7  FORWARD 50")};
        QTest::newRow("a loop") << QStringLiteral("repeat 2 [forward 10 left 45]")
                                << QStringList{QStringLiteral("1 / 4 steps  \u00b7  FORWARD 10"),
                                               QStringLiteral("2 / 4 steps  \u00b7  LEFT 45"),
                                               QStringLiteral("3 / 4 steps  \u00b7  FORWARD 10"),
                                               QStringLiteral("4 / 4 steps  \u00b7  LEFT 45")};
        QTest::newRow("aliases and a colour") << QStringLiteral("fd 20\ncolor pink\nbk 5")
                                              << QStringList{QStringLiteral("1 / 3 steps  \u00b7  FORWARD 20"),
                                                             QStringLiteral("2 / 3 steps  \u00b7  COLOR pink"),
                                                             QStringLiteral("3 / 3 steps  \u00b7  BACK 5")};
    }

    void stepProgress()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, lines);
        UI(startReturning());
        UI(ui->replaceText(QStringLiteral("codeEditor"), program));
        QVERIFY(!ui->isShown(QStringLiteral("stepProgress")));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            UI(ui->click(QStringLiteral("stepButton")));
            QVERIFY(ui->isShown(QStringLiteral("stepProgress")));
            QCOMPARE(ui->text(QStringLiteral("stepLine")), lines.at(i));
            QCOMPARE(ui->studio().stepIndex(), int(i + 1));
            QVERIFY(!ui->studio().running());
        }
        // The last step finished the drawing and judged it.
        QCOMPARE(ui->text(QStringLiteral("statusLine")), nudge);
        UI(ui->click(QStringLiteral("clearButton")));
        QVERIFY(!ui->isShown(QStringLiteral("stepProgress")));
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("Fresh canvas. Your code is still here."));
        QCOMPARE(ui->text(QStringLiteral("codeEditor")), program);
        QVERIFY(ui->studio().strokes().isEmpty());
    }

    void editingDisablesSave_data()
    {
        QTest::addColumn<QString>("edit");
        QTest::newRow("typing") << QStringLiteral("type");
        QTest::newRow("deleting") << QStringLiteral("backspace");
        QTest::newRow("a command chip") << QStringLiteral("chip");
    }

    void editingDisablesSave()
    {
        QFETCH(QString, edit);
        UI(startReturning());
        UI(ui->click(QStringLiteral("freePlayButton")));
        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(QStringLiteral("codeEditor"), QStringLiteral("forward 80\nright 90\nforward 40")));
        QVERIFY2(!ui->isEnabled(QStringLiteral("saveCreationButton")), "nothing has been drawn yet");

        QVERIFY(runToEnd());
        QVERIFY2(ui->isEnabled(QStringLiteral("saveCreationButton")), "a finished run can be saved");

        if (edit == QStringLiteral("chip")) {
            UI(ui->click(QStringLiteral("chip_1")));
            QCOMPARE(ui->studio().code(), QStringLiteral("forward 80\nright 90\nforward 40\nright 90\n"));
        } else {
            UI(ui->click(QStringLiteral("codeEditor")));
            ui->key(Qt::Key_End, Qt::ControlModifier);
            if (edit == QStringLiteral("type"))
                UI(ui->type(QStringLiteral("0")));
            else
                ui->key(Qt::Key_Backspace);
        }
        QVERIFY(ui->studio().code() != ui->studio().drawingSource());
        QVERIFY2(!ui->isEnabled(QStringLiteral("saveCreationButton")), "the drawing no longer matches the code");
        QVERIFY(!ui->studio().strokes().isEmpty()); // still drawn, only not saveable
        QVERIFY(ui->isEnabled(QStringLiteral("exportButton")));

        QVERIFY(runToEnd());
        QVERIFY2(ui->isEnabled(QStringLiteral("saveCreationButton")), "the new code has been run to its end");
    }

    void themeMenu_data()
    {
        QTest::addColumn<int>("badges");
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("available");

        QTest::newRow("no badges, peach sky locked")
            << 0 << 1 << QStringLiteral("Peach sky \u00b7 6 badges") << false;
        QTest::newRow("no badges, rose quartz locked")
            << 0 << 5 << QStringLiteral("Rose quartz \u00b7 30 badges") << false;
        QTest::newRow("six badges open peach sky") << 6 << 1 << QStringLiteral("Peach sky") << true;
        QTest::newRow("six badges, blue lagoon still locked")
            << 6 << 2 << QStringLiteral("Blue lagoon \u00b7 12 badges") << false;
        QTest::newRow("all badges, rose quartz") << 30 << 5 << QStringLiteral("Rose quartz") << true;
    }

    void themeMenu()
    {
        QFETCH(int, badges);
        QFETCH(int, entry);
        QFETCH(QString, label);
        QFETCH(bool, available);
        UI(startReturning(firstMissionsUpTo(badges)));
        QCOMPARE(ui->studio().theme(), 0);
        QCOMPARE(ui->text(QStringLiteral("themeMenuButton")), QStringLiteral("Meadow"));

        UI(ui->click(QStringLiteral("themeMenuButton")));
        UI(ui->waitFor([&] { return ui->property(QStringLiteral("themeMenu"), "opened").toBool(); },
                       QStringLiteral("the theme menu to open")));
        for (int i = 0; i < themes().size(); ++i) {
            const QString name = QStringLiteral("theme_%1").arg(i);
            QVERIFY2(ui->isShown(name), qPrintable(name));
            QCOMPARE(ui->isEnabled(name), badges >= themes().at(i).unlock);
        }
        const QString name = QStringLiteral("theme_%1").arg(entry);
        QCOMPARE(ui->text(name), label);

        UI(ui->click(name, UiHarness::Require::Anything));
        if (available) {
            QCOMPARE(ui->studio().theme(), entry);
            UI(ui->waitFor([&] { return !ui->property(QStringLiteral("themeMenu"), "visible").toBool(); },
                           QStringLiteral("the theme menu to close")));
            QCOMPARE(ui->text(QStringLiteral("themeMenuButton")), themes().at(entry).name);
            QCOMPARE(ui->store().integer(QStringLiteral("theme")), entry);
        } else {
            QTest::qWait(50);
            QCOMPARE(ui->studio().theme(), 0);
            QCOMPARE(ui->text(QStringLiteral("themeMenuButton")), QStringLiteral("Meadow"));
            ui->key(Qt::Key_Escape);
            UI(ui->waitFor([&] { return !ui->property(QStringLiteral("themeMenu"), "visible").toBool(); },
                           QStringLiteral("the theme menu to close")));
            QCOMPARE(ui->studio().theme(), 0);
        }
    }

    // What a fresh badge unlocks shows at once, without reopening anything.
    void badgeUnlocksOnScreen_data()
    {
        QTest::addColumn<int>("mission");
        QTest::addColumn<QString>("royalLine");
        QTest::addColumn<QString>("canvasLine");
        QTest::addColumn<int>("theme");
        QTest::newRow("third badge: the royal turtle")
            << 2 << QStringLiteral("Your Majesty, the royal turtle, is now yours!") << QString() << -1;
        QTest::newRow("sixth badge: a canvas") << 5 << QString() << QStringLiteral("New canvas unlocked: Peach sky!")
                                               << 1;
    }

    void badgeUnlocksOnScreen()
    {
        QFETCH(int, mission);
        QFETCH(QString, royalLine);
        QFETCH(QString, canvasLine);
        QFETCH(int, theme);
        UI(startReturning(firstMissionsUpTo(mission)));
        ui->studio().select(mission);
        const bool royal = !royalLine.isEmpty();
        QCOMPARE(ui->property(QStringLiteral("companionCard_3"), "opacity").toReal(), mission >= 3 ? 1.0 : 0.45);

        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(QStringLiteral("codeEditor"), missions().at(mission).solution));
        UI(ui->click(QStringLiteral("runButton")));
        UI(ui->waitForSheet(QStringLiteral("celebrationSheet"), true));
        QCOMPARE(ui->isShown(QStringLiteral("royalLine")), royal);
        if (royal)
            QCOMPARE(ui->text(QStringLiteral("royalLine")), royalLine);
        QCOMPARE(ui->isShown(QStringLiteral("canvasLine")), !canvasLine.isEmpty());
        if (!canvasLine.isEmpty())
            QCOMPARE(ui->text(QStringLiteral("canvasLine")), canvasLine);
        UI(ui->click(QStringLiteral("keepExploringButton")));
        UI(ui->waitForSheet(QStringLiteral("celebrationSheet"), false));
        QCOMPARE(ui->studio().mission(), mission); // keep exploring stays put
        QCOMPARE(ui->studio().code(), missions().at(mission).solution);

        // The royal companion's card answers now.
        QCOMPARE(ui->property(QStringLiteral("companionCard_3"), "opacity").toReal(), 1.0);
        UI(ui->click(QStringLiteral("companionCard_3")));
        QCOMPARE(ui->studio().turtle(), 3);

        if (theme >= 0) {
            UI(ui->click(QStringLiteral("themeMenuButton")));
            UI(ui->waitFor([&] { return ui->property(QStringLiteral("themeMenu"), "opened").toBool(); },
                           QStringLiteral("the theme menu to open")));
            const QString entry = QStringLiteral("theme_%1").arg(theme);
            QVERIFY2(ui->isEnabled(entry), "the canvas just earned can be chosen");
            QCOMPARE(ui->text(entry), themes().at(theme).name);
            UI(ui->click(entry));
            QCOMPARE(ui->studio().theme(), theme);
        }
    }

    void companionCards()
    {
        UI(startReturning());
        QCOMPARE(ui->studio().turtle(), 0);
        QCOMPARE(borderWidth(QStringLiteral("companionCard_0")), 2);

        UI(ui->click(QStringLiteral("companionCard_1")));
        QCOMPARE(ui->studio().turtle(), 1);
        QCOMPARE(ui->store().integer(QStringLiteral("turtle")), 1);
        QCOMPARE(ui->text(QStringLiteral("companionEditButton")), QStringLiteral("Peaches"));

        // The royal companion is locked with no badges: the click changes nothing.
        QCOMPARE(ui->property(QStringLiteral("companionCard_3"), "opacity").toReal(), 0.45);
        UI(ui->click(QStringLiteral("companionCard_3"), UiHarness::Require::Anything));
        QCOMPARE(ui->studio().turtle(), 1);

        // A new nickname (given in the companion sheet) shows on the card and on the pencil button.
        QVERIFY(ui->studio().saveCompanion(2, QStringLiteral("Zoomer")));
        QVERIFY2(ui->texts(QStringLiteral("companionCard_2")).contains(QStringLiteral("Zoomer")),
                 qPrintable(ui->texts(QStringLiteral("companionCard_2")).join(u'|')));
        QCOMPARE(ui->text(QStringLiteral("companionEditButton")), QStringLiteral("Zoomer"));
        QCOMPARE(borderWidth(QStringLiteral("companionCard_2")), 2);
        QCOMPARE(borderWidth(QStringLiteral("companionCard_1")), 1);
    }

    void worldPickerBrowses()
    {
        UI(startReturning());
        QVERIFY(ui->isShown(QStringLiteral("mission_0")));
        UI(ui->click(QStringLiteral("worldPicker")));
        UI(ui->waitFor([&] { return ui->property(QStringLiteral("worldPicker"), "popup")
                                       .value<QObject *>()->property("opened").toBool(); },
                       QStringLiteral("the world list to open")));
        ui->key(Qt::Key_Down);
        ui->key(Qt::Key_Down);
        ui->key(Qt::Key_Return);
        UI(ui->waitFor([&] { return ui->isShown(QStringLiteral("mission_12")); },
                       QStringLiteral("the third world's missions")));
        QCOMPARE(ui->property(QStringLiteral("worldPicker"), "displayText").toString(),
                 QStringLiteral("3. ") + worlds().at(2).title);
        QVERIFY(!ui->find(QStringLiteral("mission_0")) || !ui->isShown(QStringLiteral("mission_0")));
        QVERIFY(!ui->isEnabled(QStringLiteral("mission_12")));
        // Browsing does not select anything.
        QCOMPARE(ui->studio().mission(), 0);
        QCOMPARE(ui->text(QStringLiteral("bannerTitle")), missions().at(0).title);
    }

    void sidebarMissions_data()
    {
        QTest::addColumn<QList<qint64>>("completed");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("open");

        QTest::newRow("second, nothing done") << QList<qint64>{} << 1 << false;
        QTest::newRow("sixth, nothing done") << QList<qint64>{} << 5 << false;
        QTest::newRow("second after the first") << QList<qint64>{0} << 1 << true;
        QTest::newRow("third after only the first") << QList<qint64>{0} << 2 << false;
        QTest::newRow("completed without its predecessor") << QList<qint64>{3} << 3 << true;
        QTest::newRow("after a lone badge") << QList<qint64>{3} << 4 << true;
    }

    void sidebarMissions()
    {
        QFETCH(QList<qint64>, completed);
        QFETCH(int, row);
        QFETCH(bool, open);
        UI(startReturning(completed));
        const QString name = QStringLiteral("mission_%1").arg(row);
        QVERIFY2(ui->isShown(name), qPrintable(name));
        QCOMPARE(ui->isEnabled(name), open);
        QCOMPARE(ui->property(name, "opacity").toReal(), open ? 1.0 : 0.5);
        const QStringList labels = ui->texts(name);
        QVERIFY2(labels.contains(missions().at(row).title), qPrintable(labels.join(u'|')));
        QVERIFY2(labels.contains(missions().at(row).subtitle), qPrintable(labels.join(u'|')));

        QSignalSpy missionChanges(&ui->studio(), &Studio::missionChanged);
        UI(ui->click(name, UiHarness::Require::Anything));
        if (open) {
            QCOMPARE(ui->studio().mission(), row);
            QCOMPARE(ui->text(QStringLiteral("bannerTitle")), missions().at(row).title);
            QCOMPARE(ui->text(QStringLiteral("codeEditor")), missions().at(row).starter);
        } else {
            QTest::qWait(50);
            QCOMPARE(missionChanges.count(), 0);
            QCOMPARE(ui->studio().mission(), 0);
            QCOMPARE(ui->text(QStringLiteral("bannerTitle")), missions().at(0).title);
        }
    }

    void ctrlReturnStartsAndStops_data()
    {
        QTest::addColumn<bool>("editorFocused");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("typing in the editor") << true << int(Qt::Key_Return) << int(Qt::ControlModifier);
        QTest::newRow("editor not focused") << false << int(Qt::Key_Return) << int(Qt::ControlModifier);
        QTest::newRow("keypad Enter") << true << int(Qt::Key_Enter) << int(Qt::ControlModifier | Qt::KeypadModifier);
    }

    void ctrlReturnStartsAndStops()
    {
        QFETCH(bool, editorFocused);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        UI(startReturning());
        const QString program = QStringLiteral("repeat 36 [forward 10 right 10]");
        UI(ui->chooseSpeed(false));
        UI(ui->replaceText(QStringLiteral("codeEditor"), program));
        if (!editorFocused)
            UI(ui->click(QStringLiteral("hintButton"))); // takes the focus away from the editor
        QCOMPARE(ui->hasFocus(QStringLiteral("codeEditor")), editorFocused);

        ui->key(Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QVERIFY(ui->studio().running());
        QCOMPARE(ui->text(QStringLiteral("runButton")), QStringLiteral("Stop"));
        QVERIFY(!ui->isEnabled(QStringLiteral("codeEditor")));
        QVERIFY(!ui->isEnabled(QStringLiteral("stepButton")));
        QVERIFY(!ui->isEnabled(QStringLiteral("chip_0")));
        QVERIFY(!ui->isEnabled(QStringLiteral("saveCreationButton")));
        QVERIFY(!ui->isEnabled(QStringLiteral("exportButton")));
        QVERIFY(ui->isEnabled(QStringLiteral("runButton")));
        UI(ui->waitFor([&] { return ui->studio().strokes().size() >= 2; }, QStringLiteral("a few lines")));

        ui->key(Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QVERIFY(!ui->studio().running());
        const qsizetype drawn = ui->studio().strokes().size();
        QVERIFY(drawn < 36);
        QTest::qWait(2 * qRound(Studio::slowestSpeed * 1000));
        QCOMPARE(ui->studio().strokes().size(), drawn); // really stopped, not paused
        QCOMPARE(ui->text(QStringLiteral("runButton")), QStringLiteral("Run code"));
        QVERIFY(ui->isEnabled(QStringLiteral("codeEditor")));
        QCOMPARE(ui->studio().code(), program); // the key did not also type a line break
    }

    // A modal sheet has the child's attention: the studio behind it does not run.
    void ctrlReturnIgnoredBehindSheets_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("sheet");
        QTest::newRow("save dialog") << QStringLiteral("saveCreationButton") << QStringLiteral("savingSheet");
        QTest::newRow("map") << QStringLiteral("mapButton") << QStringLiteral("mapSheet");
        QTest::newRow("handbook") << QStringLiteral("handbookButton") << QStringLiteral("guideSheet");
    }

    void ctrlReturnIgnoredBehindSheets()
    {
        QFETCH(QString, button);
        QFETCH(QString, sheet);
        UI(startReturning());
        UI(ui->click(QStringLiteral("freePlayButton")));
        UI(ui->chooseSpeed(true));
        const QString program = QStringLiteral("forward 40\nright 90\nforward 40");
        UI(ui->replaceText(QStringLiteral("codeEditor"), program));
        QVERIFY(runToEnd());
        UI(ui->chooseSpeed(false));

        UI(ui->click(button));
        UI(ui->waitForSheet(sheet, true));
        QSignalSpy runs(&ui->studio(), &Studio::runningChanged);
        ui->key(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(runs.count(), 0);
        QVERIFY(!ui->studio().running());
        QCOMPARE(ui->studio().drawingSource(), program); // the finished drawing is still there to save

        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(sheet, false));
        ui->key(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY2(ui->studio().running(), "with the sheet gone the shortcut works again");
        ui->key(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(!ui->studio().running());
    }

    void saveCreation_data()
    {
        QTest::addColumn<bool>("freePlay");
        QTest::addColumn<QString>("prefilled");
        QTest::newRow("free play") << true << QStringLiteral("My masterpiece");
        QTest::newRow("in a mission") << false << QStringLiteral("Baby steps");
    }

    void saveCreation()
    {
        QFETCH(bool, freePlay);
        QFETCH(QString, prefilled);
        UI(startReturning());
        if (freePlay)
            UI(ui->click(QStringLiteral("freePlayButton")));
        UI(ui->chooseSpeed(true));
        const QString program = QStringLiteral("forward 30\nright 45\nforward 30");
        UI(ui->replaceText(QStringLiteral("codeEditor"), program));
        QVERIFY(runToEnd());

        UI(ui->click(QStringLiteral("saveCreationButton")));
        UI(ui->waitForSheet(QStringLiteral("savingSheet"), true));
        QVERIFY(ui->studio().saving());
        QCOMPARE(ui->text(QStringLiteral("titleField")), prefilled);
        QVERIFY(ui->isEnabled(QStringLiteral("saveToGalleryButton")));

        UI(ui->replaceText(QStringLiteral("titleField"), QStringLiteral("Rainbow road")));
        QCOMPARE(ui->studio().creationTitle(), QStringLiteral("Rainbow road"));
        UI(ui->click(QStringLiteral("saveToGalleryButton")));
        UI(ui->waitForSheet(QStringLiteral("savingSheet"), false));
        QVERIFY(!ui->studio().saving());
        QCOMPARE(ui->studio().creations().size(), 1);
        QCOMPARE(ui->studio().creations().constFirst().title, QStringLiteral("Rainbow road"));
        QCOMPARE(ui->studio().creations().constFirst().code, program);
        QCOMPARE(ui->studio().creations().constFirst().strokes, ui->studio().strokes());
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("\u2018Rainbow road\u2019 is safe in your gallery."));
    }

    void saveDialogCancelAndBlankTitle()
    {
        UI(startReturning());
        UI(ui->click(QStringLiteral("freePlayButton")));
        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(QStringLiteral("codeEditor"), QStringLiteral("forward 30")));
        QVERIFY(runToEnd());

        UI(ui->click(QStringLiteral("saveCreationButton")));
        UI(ui->waitForSheet(QStringLiteral("savingSheet"), true));
        UI(ui->replaceText(QStringLiteral("titleField"), QStringLiteral("Half done")));
        UI(ui->click(QStringLiteral("cancelSaveButton")));
        UI(ui->waitForSheet(QStringLiteral("savingSheet"), false));
        QVERIFY(!ui->studio().saving());
        QCOMPARE(ui->studio().creationTitle(), QStringLiteral("Half done"));
        QVERIFY(ui->studio().creations().isEmpty());

        // Opening again starts from the suggestion; a title of spaces cannot be saved.
        UI(ui->click(QStringLiteral("saveCreationButton")));
        UI(ui->waitForSheet(QStringLiteral("savingSheet"), true));
        QCOMPARE(ui->text(QStringLiteral("titleField")), QStringLiteral("My masterpiece"));
        UI(ui->replaceText(QStringLiteral("titleField"), QStringLiteral("   ")));
        QVERIFY(!ui->isEnabled(QStringLiteral("saveToGalleryButton")));
        ui->key(Qt::Key_Return);
        QTest::qWait(50);
        QVERIFY(ui->isSheetOpen(QStringLiteral("savingSheet")));
        QVERIFY(ui->studio().creations().isEmpty());

        // Return in the field saves a real title directly.
        UI(ui->replaceText(QStringLiteral("titleField"), QStringLiteral("Quick one")));
        QVERIFY(ui->isEnabled(QStringLiteral("saveToGalleryButton")));
        ui->key(Qt::Key_Return);
        UI(ui->waitForSheet(QStringLiteral("savingSheet"), false));
        QCOMPARE(ui->studio().creations().size(), 1);
        QCOMPARE(ui->studio().creations().constFirst().title, QStringLiteral("Quick one"));
    }

    void sheetRouting_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("sheet");
        QTest::addColumn<QByteArray>("flag");
        QTest::newRow("My creations") << QStringLiteral("galleryButton") << QStringLiteral("gallerySheet")
                                      << QByteArray("gallery");
        QTest::newRow("Treasures") << QStringLiteral("treasuresButton") << QStringLiteral("collectionSheet")
                                   << QByteArray("collection");
        QTest::newRow("profile") << QStringLiteral("profileButton") << QStringLiteral("playerSettingsSheet")
                                 << QByteArray("playerSettings");
        QTest::newRow("Adventure map") << QStringLiteral("mapButton") << QStringLiteral("mapSheet")
                                       << QByteArray("map");
        QTest::newRow("Coder's handbook") << QStringLiteral("handbookSidebarButton") << QStringLiteral("guideSheet")
                                          << QByteArray("guide");
        QTest::newRow("editor's handbook button") << QStringLiteral("handbookButton") << QStringLiteral("guideSheet")
                                                  << QByteArray("guide");
        QTest::newRow("Welcome guide") << QStringLiteral("welcomeGuideButton") << QStringLiteral("welcomeSheet")
                                       << QByteArray("welcome");
        QTest::newRow("companion pencil") << QStringLiteral("companionEditButton")
                                          << QStringLiteral("companionSettingsSheet")
                                          << QByteArray("companionSettings");
    }

    void sheetRouting()
    {
        QFETCH(QString, button);
        QFETCH(QString, sheet);
        QFETCH(QByteArray, flag);
        UI(startReturning());
        QVERIFY(!ui->studio().property(flag.constData()).toBool());

        UI(ui->click(button));
        QVERIFY2(ui->studio().property(flag.constData()).toBool(), flag.constData());
        UI(ui->waitForSheet(sheet, true));
        for (const QString &other : allSheets) {
            if (other != sheet)
                QVERIFY2(!ui->isSheetOpen(other), qPrintable(other + QStringLiteral(" opened too")));
        }

        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(sheet, false));
        QVERIFY2(!ui->studio().property(flag.constData()).toBool(), flag.constData());

        // The flag opens the sheet again, with fresh content.
        ui->studio().setProperty(flag.constData(), true);
        UI(ui->waitForSheet(sheet, true));
        ui->studio().setProperty(flag.constData(), false);
        UI(ui->waitForSheet(sheet, false));
    }

    void profileDismissal_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<bool>("erases");
        QTest::newRow("Escape") << QStringLiteral("escape") << false;
        QTest::newRow("click outside") << QStringLiteral("outside") << false;
        QTest::newRow("confirmed erase") << QStringLiteral("erase") << true;
    }

    void profileDismissal()
    {
        QFETCH(QString, way);
        QFETCH(bool, erases);
        ui->store().setString(QStringLiteral("code0"), QStringLiteral("forward 7"));
        UI(startReturning({0, 1, 2}));
        Studio &studio = ui->studio();

        UI(ui->click(QStringLiteral("profileButton")));
        UI(ui->waitForSheet(QStringLiteral("playerSettingsSheet"), true));
        QObject *sheet = ui->find(QStringLiteral("playerSettingsSheet"));
        QVERIFY(sheet);
        QSignalSpy dismissed(sheet, SIGNAL(dismissed()));
        QVERIFY(dismissed.isValid());

        // The erase must wait until the sheet is gone from the screen.
        int eraseCount = 0;
        bool sheetShownDuringErase = false;
        connect(&studio, &Studio::completedChanged, sheet, [&] {
            ++eraseCount;
            sheetShownDuringErase = sheet->property("visible").toBool();
        });

        if (way == QStringLiteral("escape"))
            ui->key(Qt::Key_Escape);
        else if (way == QStringLiteral("outside"))
            UI(ui->click(QStringLiteral("experience"), UiHarness::Require::Anything));
        else
            studio.requestGameReset(); // what the sheet's confirmed erase calls
        UI(ui->waitForSheet(QStringLiteral("playerSettingsSheet"), false));
        QTest::qWait(50);

        QCOMPARE(dismissed.count(), 1);
        QVERIFY(!studio.playerSettings());
        QVERIFY(!studio.resetAfterProfileDismissal());
        if (erases) {
            QCOMPARE(eraseCount, 1);
            QVERIFY(!sheetShownDuringErase);
            QVERIFY(studio.completed().isEmpty());
            QVERIFY(studio.playerName().isEmpty());
            QVERIFY(!ui->store().keys().contains(QStringLiteral("completed")));
            QVERIFY(!ui->store().keys().contains(QStringLiteral("code0")));
            UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), true));
            QCOMPARE(ui->text(QStringLiteral("experience")), QStringLiteral("\u2726 0 XP"));
            QCOMPARE(ui->text(QStringLiteral("codeEditor")), missions().at(0).starter);
        } else {
            QCOMPARE(eraseCount, 0);
            QCOMPARE(studio.completed().size(), 3);
            QCOMPARE(studio.playerName(), QStringLiteral("Ada"));
            QCOMPARE(ui->store().string(QStringLiteral("code0")).value_or(QString()), QStringLiteral("forward 7"));
            QVERIFY(!studio.welcome());
            QCOMPARE(ui->text(QStringLiteral("experience")), QStringLiteral("\u2726 300 XP"));
        }
    }
};

QTEST_MAIN(StudioUiTest)
#include "tst_studio_ui.moc"
