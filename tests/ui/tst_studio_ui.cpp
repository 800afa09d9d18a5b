// The studio window as a child uses it: real clicks and key presses on the real screens,
// with a real Studio on a temporary store. Any QML warning fails the test it happened in.
#include "UiHarness.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "curriculum/Worlds.h"
#include "canvas/SurfacePainter.h"

#include <QQuickTextDocument>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <QDir>
#include <QFileInfo>
#include <QQmlComponent>
#include <QStandardPaths>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString nudge = u"Nice experiment! Try the mission goal, or ask for a hint."_s;

const QStringList allSheets{u"playerSettingsSheet"_s, u"welcomeSheet"_s, u"companionSettingsSheet"_s,
                            u"collectionSheet"_s,     u"celebrationSheet"_s, u"gallerySheet"_s,
                            u"savingSheet"_s,         u"guideSheet"_s,     u"mapSheet"_s};

} // namespace

class StudioUiTest : public UiTest
{
    Q_OBJECT

    bool themeMenuOpen(bool open)
    {
        return ui->waitFor([&] { return ui->property(u"themeMenu"_s, "visible").toBool() == open; }, u"the theme menu"_s);
    }

    int borderWidth(const QString &name) const
    {
        const auto *border = ui->property(name, "border").value<QObject *>();
        return border ? border->property("width").toInt() : -1;
    }

    // The editor's text under a mark laid over it.
    QString wordUnder(const QString &mark) const
    {
        QQuickItem *over = ui->item(mark);
        QObject *editor = ui->find(u"codeEditor"_s);
        if (!over || !over->isVisible())
            return u"(no mark)"_s;
        int from = -1, to = -1;
        const qreal middle = over->y() + over->height() / 2;
        QMetaObject::invokeMethod(editor, "positionAt", Q_RETURN_ARG(int, from), Q_ARG(qreal, over->x() + 1),
                                  Q_ARG(qreal, middle));
        QMetaObject::invokeMethod(editor, "positionAt", Q_RETURN_ARG(int, to),
                                  Q_ARG(qreal, over->x() + over->width() - 1), Q_ARG(qreal, middle));
        return ui->studio().code().mid(from, to - from + 1).trimmed();
    }

private slots:
    // The guard itself: a broken binding must be noticed, or every other test proves less.
    void warningsAreCaught()
    {
        UI(startReturning());
        QQmlComponent broken(ui->window() ? qmlEngine(ui->window()) : nullptr);
        QVERIFY(broken.engine());
        broken.setData("import QtQuick\nItem { width: noSuchThing.width }", QUrl(u"qrc:/probe.qml"_s));
        std::unique_ptr<QObject> probe(broken.create());
        QVERIFY(probe);
        const QStringList warnings = UiHarness::takeWarnings();
        QVERIFY2(warnings.join(u'\n').contains(u"noSuchThing"_s), qPrintable(warnings.join(u'\n')));
    }

    // All thirty badges are the journey's.
    void headerAndBanner()
    {
        UI(startReturning({7, 8}));
        QCOMPARE(ui->text(u"experience"_s), u"\u2726 200 XP"_s);
        QCOMPARE(ui->text(u"rank"_s), u"Curious Coder"_s);
        QCOMPARE(ui->text(u"progressText"_s), u"2 / 30 missions explored"_s);
        QCOMPARE(ui->text(u"badgeCapsule"_s), u"\u2713 +100 XP"_s); // mission 0 is not among them
        QCOMPARE(ui->text(u"worldTitle"_s), u"Ada\u2019S WORLD OF CODE"_s);
        QCOMPARE(ui->text(u"bannerKicker"_s), u"MISSION 1 OF 30  \u2022  TURTLE TRAIL"_s);
        QCOMPARE(ui->text(u"bannerTitle"_s), u"Baby steps"_s);
        QCOMPARE(ui->texts(u"profileButton"_s), QStringList{u"A"_s});
        // The window carries the logo; at the default size the studio shows whole, down to its
        // last line, with nothing to scroll.
        QVERIFY(!ui->window()->icon().pixmap(48).isNull());
        QCOMPARE(ui->window()->size(), QSize(1380, 920));
        QQuickItem *last = ui->item(u"encouragement"_s);
        QVERIFY(ui->window()->contentItem()->boundingRect().contains(last->mapRectToScene(last->boundingRect())));
        QVERIFY(!ui->property(u"mainColumn"_s, "continues").toBool());

        // Free play swaps the banner and hides the badge.
        UI(ui->click(u"freePlayButton"_s));
        QVERIFY(ui->studio().free());
        QCOMPARE(ui->text(u"bannerKicker"_s), u"YOUR IDEAS. YOUR RULES."_s);
        QCOMPARE(ui->text(u"bannerTitle"_s), u"The imagination station"_s);
        QVERIFY(!ui->isShown(u"badgeCapsule"_s));
        QVERIFY(!ui->isShown(u"targetSwitch"_s));
        QCOMPARE(ui->text(u"experience"_s), u"\u2726 200 XP"_s);
    }

    // A repeat, then the last of the first world (a new canvas): the next step in the same world and in
    // a new one. Free play after the last mission is the journey's.
    void solveAndMoveOn()
    {
        UI(startReturning(range(0, 5)));
        UI(ui->chooseSpeed(true));
        for (const auto &[mission, headline, experience, kicker] :
             {std::tuple(0, u"You\u2019ve still got it!"_s, u"\u2726 500 XP"_s, u"MISSION 2 OF 30  \u2022  TURTLE TRAIL"_s),
              std::tuple(5, u"Look what you made!"_s, u"\u2726 600 XP"_s, u"MISSION 7 OF 30  \u2022  SHAPE CITY"_s)}) {
            ui->studio().select(mission); // arranged: the sidebar's own clicks are tested below
            UI(ui->replaceText(u"codeEditor"_s, missions().at(mission).solution));
            UI(ui->clickForSheet(u"runButton"_s, u"celebrationSheet"_s));
            QCOMPARE(ui->text(u"celebrationHeadline"_s), headline);
            QCOMPARE(ui->text(u"nextAdventureButton"_s), u"Next adventure"_s);
            QCOMPARE(ui->text(u"experience"_s), experience);
            QCOMPARE(ui->text(u"badgeCapsule"_s), u"\u2713 Earned"_s);
            QCOMPARE(ui->isShown(u"canvasLine"_s), mission == 5);
            if (mission == 5)
                QCOMPARE(ui->text(u"canvasLine"_s), u"New canvas unlocked: Peach sky!"_s);
            QVERIFY(!ui->isShown(u"royalLine"_s));

            UI(ui->clickForSheet(u"nextAdventureButton"_s, u"celebrationSheet"_s, false));
            QCOMPARE(ui->text(u"bannerKicker"_s), kicker);
            QCOMPARE(ui->studio().mission(), mission + 1);
            QCOMPARE(ui->text(u"codeEditor"_s), missions().at(mission + 1).starter);
            QCOMPARE(ui->text(u"goalText"_s), missions().at(mission + 1).goal);
            // The sidebar follows into the next mission's world, where a badge earned on screen opened the row.
            QVERIFY(ui->isShown(u"mission_%1"_s.arg(mission + 1)) && ui->isEnabled(u"mission_%1"_s.arg(mission + 1)));
            QCOMPARE(ui->property(u"worldPicker"_s, "currentIndex").toInt(), worldOf(mission + 1));
        }
        // The canvas just earned answers in the menu at once; the next stays locked and looks it; every label fits.
        QCOMPARE(ui->text(u"themeMenuButton"_s), u"Meadow"_s);
        UI(ui->click(u"themeMenuButton"_s));
        UI(themeMenuOpen(true));
        for (int i = 0; i < themes().size(); ++i) {
            const QString name = u"theme_%1"_s.arg(i);
            QVERIFY2(ui->isShown(name), qPrintable(name));
            QCOMPARE(ui->isEnabled(name), i < 2);
            QCOMPARE(ui->property(name, "opacity").toReal() < 1, i >= 2);
            QVERIFY(ui->property(name, "implicitWidth").toReal() <= ui->property(name, "width").toReal());
        }
        QCOMPARE(ui->text(u"theme_2"_s), u"Blue lagoon \u00b7 12 badges"_s);
        UI(ui->click(u"theme_2"_s, UiHarness::Require::Anything));
        QTest::qWait(50);
        QCOMPARE(ui->studio().theme(), 0);
        UI(ui->click(u"theme_1"_s));
        UI(themeMenuOpen(false));
        QCOMPARE(ui->studio().theme(), 1);
        QCOMPARE(ui->text(u"themeMenuButton"_s), themes().at(1).name);
        QCOMPARE(ui->store().integer(u"theme"_s), 1);
    }

    // A comment alone is text in the editor with still nothing to run; a wrong drawing only encourages.
    void wrongDrawingEncourages()
    {
        UI(startReturning());
        UI(ui->replaceText(u"codeEditor"_s, u"; just thinking"_s));
        QCOMPARE(ui->studio().code(), u"; just thinking"_s);
        UI(ui->click(u"runButton"_s));
        QCOMPARE(ui->text(u"statusLine"_s), u"Add a command first. Try FORWARD 100."_s);
        QCOMPARE(ui->text(u"runButton"_s), u"Run code"_s);
        QVERIFY(!ui->isEnabled(u"saveCreationButton"_s));
        QVERIFY(!ui->isEnabled(u"exportButton"_s));

        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(u"codeEditor"_s, u"forward 100\nright 90\nforward 100"_s));
        QVERIFY(runToEnd());
        QCOMPARE(ui->text(u"statusLine"_s), nudge);
        QTest::qWait(100); // a celebration would already be on its way
        QVERIFY(!ui->studio().celebration());
        QVERIFY(!ui->isSheetOpen(u"celebrationSheet"_s));
        QCOMPARE(ui->text(u"experience"_s), u"\u2726 0 XP"_s);
        QCOMPARE(ui->text(u"badgeCapsule"_s), u"\u2713 +100 XP"_s);
        QVERIFY(!ui->isEnabled(u"mission_1"_s));
        QVERIFY(!ui->studio().strokes().isEmpty()); // the drawing stays for the child to look at
    }

    void hints()
    {
        UI(startReturning());
        const Mission &mission = missions().at(0);
        QCOMPARE(ui->text(u"hintButton"_s), u"A little hint"_s);
        QVERIFY(!ui->isShown(u"hintText"_s));
        for (qsizetype i = 0; i < mission.hints.size(); ++i) {
            QVERIFY(ui->isEnabled(u"hintButton"_s));
            UI(ui->click(u"hintButton"_s));
            QVERIFY(ui->isShown(u"hintText"_s));
            QCOMPARE(ui->text(u"hintText"_s), mission.hints.at(i));
            QCOMPARE(ui->text(u"hintButton"_s), u"Next hint"_s);
        }
        QVERIFY2(!ui->isEnabled(u"hintButton"_s), "every hint is already shown");
        UI(ui->click(u"hintButton"_s, UiHarness::Require::Anything));
        QCOMPARE(ui->studio().hint(), int(mission.hints.size()));

        // The target switch puts the mission's drawing on the canvas as a ghost, and takes it away.
        const auto ghost = [&] { return ui->property(u"canvas"_s, "ghost").value<QList<Stroke>>(); };
        QVERIFY(ghost().isEmpty());
        UI(ui->click(u"targetSwitch"_s));
        QVERIFY(ui->studio().showTarget());
        QVERIFY(!ghost().isEmpty());
        QCOMPARE(ghost(), ui->studio().targetStrokes());
        UI(ui->click(u"targetSwitch"_s));
        QVERIFY(!ui->studio().showTarget());
        QVERIFY(ghost().isEmpty());
    }

    // A loop unrolls into its steps and short names show in full; the running word (and its recipe
    // call) is marked step by step, and no mark stays behind the last.
    void stepProgress()
    {
        const QString program = u"to side fd 20 end\nside\nrepeat 2 [left 45]\ncolor pink\nbk 5"_s;
        const QStringList lines{u"1 / 5 steps  \u00b7  FORWARD 20"_s, u"2 / 5 steps  \u00b7  LEFT 45"_s,
                                u"3 / 5 steps  \u00b7  LEFT 45"_s, u"4 / 5 steps  \u00b7  COLOR pink"_s,
                                u"5 / 5 steps  \u00b7  BACK 5"_s};
        UI(startReturning());
        UI(ui->replaceText(u"codeEditor"_s, program));
        QVERIFY(!ui->isShown(u"stepProgress"_s));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            UI(ui->click(u"stepButton"_s));
            QVERIFY(ui->isShown(u"stepProgress"_s));
            QCOMPARE(ui->text(u"stepLine"_s), lines.at(i));
            QCOMPARE(ui->studio().stepIndex(), int(i + 1));
            QVERIFY(!ui->studio().running());
            if (i == 0) {
                QCOMPARE(wordUnder(u"runMark"_s), u"fd"_s);
                QCOMPARE(wordUnder(u"callMark"_s), u"side"_s);
            }
        }
        QVERIFY(!ui->isShown(u"runMark"_s));
        QVERIFY(!ui->isShown(u"callMark"_s));
        // The last step finished the drawing and judged it.
        QCOMPARE(ui->text(u"statusLine"_s), nudge);
        UI(ui->click(u"clearButton"_s));
        QVERIFY(!ui->isShown(u"stepProgress"_s));
        QCOMPARE(ui->text(u"statusLine"_s), u"Fresh canvas. Your code is still here."_s);
        QCOMPARE(ui->text(u"codeEditor"_s), program);
        QVERIFY(ui->studio().strokes().isEmpty());
    }

    // Words by role; an error's mark until the next edit.
    void codeMarks()
    {
        UI(startReturning());
        UI(ui->replaceText(u"codeEditor"_s, u"to side fd 20 end\nside ; go\nrt 45 jump"_s));
        const auto *document = ui->property(u"codeEditor"_s, "textDocument").value<QQuickTextDocument *>();
        const QVariantMap colors = ui->property(u"codeHighlighter"_s, "colors").toMap();
        QStringList roles;
        for (const QTextLayout::FormatRange &range : document->textDocument()->begin().next().layout()->formats())
            roles << colors.key(range.format.foreground().color().name());
        QCOMPARE(roles, (QStringList{u"recipe"_s, u"comment"_s}));
        UI(ui->click(u"runButton"_s));
        QCOMPARE(wordUnder(u"errorMark"_s), u"jump"_s);
        QCOMPARE(ui->property(u"codeEditor"_s, "cursorPosition").toInt(), 34);
        UI(ui->click(u"codeEditor"_s));
        UI(ui->type(u"x"_s));
        QVERIFY(!ui->isShown(u"errorMark"_s));
    }

    // A click on a line selects the command that drew it; a near miss shows what differs until the next edit.
    void stageAndCode()
    {
        UI(startReturning({0, 1}));
        UI(ui->click(u"mission_2"_s));
        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(u"codeEditor"_s, u"repeat 3 [fd 100 rt 90]\nrt 90 pu fd 10 pd\nfd 100"_s));
        QVERIFY(runToEnd());
        QQuickItem *marks = ui->item(u"stageMarks"_s);
        const QList<Stroke> strokes = ui->studio().strokes();
        const SurfaceFit fit = fitSurface(marks->size(), ui->property(u"canvas"_s, "bounds").value<QList<Stroke>>(), {});
        const QPointF middle = fit.map((strokes.at(3).from + strokes.at(3).to) / 2);
        QTest::mouseClick(ui->window(), Qt::LeftButton, {}, marks->mapToScene(middle).toPoint());
        QCOMPARE(ui->property(u"codeEditor"_s, "selectedText").toString(), u"fd"_s);
        QCOMPARE(ui->property(u"codeEditor"_s, "selectionStart").toInt(), 42);

        UI(ui->click(u"differenceButton"_s));
        QVERIFY(ui->isShown(u"differenceLegend"_s));
        QCOMPARE(ui->text(u"differenceSentence"_s), u"This shape does not close yet."_s);
        QCOMPARE(ui->property(u"stageMarks"_s, "missing").value<QList<Stroke>>().size(), 2);
        QCOMPARE(ui->text(u"statusLine"_s), nudge);
        UI(ui->click(u"codeEditor"_s));
        UI(ui->type(u" "_s));
        QVERIFY(!ui->isShown(u"differenceLegend"_s));
        QVERIFY(!ui->isShown(u"differenceButton"_s));
    }

    // Typing and a command chip each make the drawing stale; running again makes it saveable.
    void editingDisablesSaveAndSheetsHoldTheRun()
    {
        UI(startReturning());
        UI(ui->click(u"freePlayButton"_s));
        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(u"codeEditor"_s, u"forward 80\nright 90\nforward 40"_s));
        QVERIFY2(!ui->isEnabled(u"saveCreationButton"_s), "nothing has been drawn yet");
        QVERIFY(runToEnd());
        QVERIFY2(ui->isEnabled(u"saveCreationButton"_s), "a finished run can be saved");

        for (const bool chip : {false, true}) {
            if (chip) {
                UI(ui->click(u"chip_1"_s));
                QCOMPARE(ui->studio().code(), u"forward 80\nright 90\nforward 400\nright 90\n"_s);
            } else {
                UI(ui->click(u"codeEditor"_s));
                ui->key(Qt::Key_End, Qt::ControlModifier);
                UI(ui->type(u"0"_s));
            }
            QVERIFY(ui->studio().code() != ui->studio().drawingSource());
            QVERIFY2(!ui->isEnabled(u"saveCreationButton"_s), "the drawing no longer matches the code");
            QVERIFY(!ui->studio().strokes().isEmpty()); // still drawn, only not saveable
            QVERIFY(ui->isEnabled(u"exportButton"_s));
            QVERIFY(runToEnd());
            QVERIFY2(ui->isEnabled(u"saveCreationButton"_s), "the new code has been run to its end");
        }

        // A modal sheet has the child's attention: the studio behind it does not run.
        const QList<std::pair<QString, QString>> sheets{{u"saveCreationButton"_s, u"savingSheet"_s},
                                                        {u"mapButton"_s, u"mapSheet"_s},
                                                        {u"handbookButton"_s, u"guideSheet"_s}};
        for (const auto &[button, sheet] : sheets) {
            UI(ui->clickForSheet(button, sheet));
            QSignalSpy runs(&ui->studio(), &Studio::runningChanged);
            ui->key(Qt::Key_Return, Qt::ControlModifier);
            QVERIFY2(runs.isEmpty(), qPrintable(sheet));
            QCOMPARE(ui->studio().drawingSource(), ui->studio().code()); // the finished drawing is still there to save

            ui->key(Qt::Key_Escape);
            UI(ui->waitForSheet(sheet, false));
            ui->key(Qt::Key_Return, Qt::ControlModifier);
            QVERIFY2(ui->studio().running(), "with the sheet gone the shortcut works again");
            UI(ui->waitFor([&] { return !ui->studio().running(); }, u"the run to finish"_s));
        }
    }

    // The third badge unlocks the royal companion at once, without reopening anything.
    void royalCompanion()
    {
        UI(startReturning({0, 1}));
        ui->studio().select(2);
        QCOMPARE(ui->property(u"companionCard_3"_s, "opacity").toReal(), 0.45);
        UI(ui->click(u"companionCard_3"_s, UiHarness::Require::Anything)); // locked: the click changes nothing
        QCOMPARE(ui->studio().turtle(), 0);

        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(u"codeEditor"_s, missions().at(2).solution));
        UI(ui->clickForSheet(u"runButton"_s, u"celebrationSheet"_s));
        QCOMPARE(ui->text(u"royalLine"_s), u"Your Majesty, the royal turtle, is now yours!"_s);
        QVERIFY(ui->isShown(u"royalLine"_s));
        QVERIFY(!ui->isShown(u"canvasLine"_s));
        UI(ui->clickForSheet(u"keepExploringButton"_s, u"celebrationSheet"_s, false));
        QCOMPARE(ui->studio().mission(), 2); // keep exploring stays put
        QCOMPARE(ui->studio().code(), missions().at(2).solution);

        // The royal card answers now; the chosen card is stored and has the thicker border.
        QCOMPARE(ui->property(u"companionCard_3"_s, "opacity").toReal(), 1.0);
        UI(ui->click(u"companionCard_3"_s));
        QCOMPARE(ui->studio().turtle(), 3);
        QCOMPARE(ui->store().integer(u"turtle"_s), 3);
        QCOMPARE(ui->text(u"companionEditButton"_s), u"Your Majesty"_s);
        // A new nickname (given in the companion sheet) shows on the card and on the pencil button.
        QVERIFY(ui->studio().saveCompanion(2, u"Zoomer"_s));
        QVERIFY2(ui->texts(u"companionCard_2"_s).contains(u"Zoomer"_s),
                 qPrintable(ui->texts(u"companionCard_2"_s).join(u'|')));
        QCOMPARE(ui->text(u"companionEditButton"_s), u"Zoomer"_s);
        QCOMPARE(borderWidth(u"companionCard_2"_s), 2);
        QCOMPARE(borderWidth(u"companionCard_3"_s), 1);
    }

    // A row opens after its predecessor's badge or its own; rows with nothing earned stay shut (the
    // second one at the start is wrongDrawingEncourages'). Earned rows show a green check, open ones
    // a circle and shut ones a lock, both violet.
    void sidebarMissions()
    {
        UI(startReturning({3}));
        for (const int row : {2, 3, 4}) {
            const bool open = row != 2, done = row == 3;
            const QString name = u"mission_%1"_s.arg(row);
            QVERIFY2(ui->isShown(name), qPrintable(name));
            QCOMPARE(ui->isEnabled(name), open);
            QCOMPARE(ui->property(name, "opacity").toReal(), open ? 1.0 : 0.5);
            const QString mark = u"missionMark_%1"_s.arg(row);
            QCOMPARE(ui->property(mark, "name").toString(),
                     done ? u"checkmark.circle.fill"_s : open ? u"circle"_s : u"lock.fill"_s);
            const QColor colour = done ? QColor::fromRgbF(0.2, 0.78, 0.35) : QColor::fromRgbF(0.42, 0.28, 0.88);
            QCOMPARE(ui->property(mark, "color").value<QColor>().rgb(), colour.rgb());
            const QStringList labels = ui->texts(name);
            QVERIFY2(labels.contains(missions().at(row).title), qPrintable(labels.join(u'|')));
            QVERIFY2(labels.contains(missions().at(row).subtitle), qPrintable(labels.join(u'|')));
        }

        QSignalSpy missionChanges(&ui->studio(), &Studio::missionChanged);
        const QString title = ui->text(u"bannerTitle"_s);
        UI(ui->click(u"mission_2"_s, UiHarness::Require::Anything));
        QTest::qWait(50);
        QCOMPARE(missionChanges.count(), 0);
        QCOMPARE(ui->text(u"bannerTitle"_s), title);
        for (const int row : {3, 4}) {
            UI(ui->click(u"mission_%1"_s.arg(row)));
            QCOMPARE(ui->studio().mission(), row);
            QCOMPARE(ui->text(u"bannerTitle"_s), missions().at(row).title);
            QCOMPARE(ui->text(u"codeEditor"_s), missions().at(row).starter);
        }

        // Browsing another world shows its rows and selects nothing.
        UI(ui->click(u"worldPicker"_s));
        const auto *list = ui->property(u"worldPicker"_s, "popup").value<QObject *>();
        UI(ui->waitFor([&] { return list->property("opened").toBool(); }, u"the world list to open"_s));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return})
            ui->key(key);
        UI(ui->waitFor([&] { return ui->isShown(u"mission_12"_s); }, u"the third world's missions"_s));
        QCOMPARE(ui->property(u"worldPicker"_s, "displayText").toString(), u"3. "_s + worlds().at(2).title);
        QVERIFY(!ui->isShown(u"mission_4"_s));
        QVERIFY(!ui->isEnabled(u"mission_12"_s));
        QCOMPARE(ui->studio().mission(), 4);
    }

    // Ctrl+Return starts and Ctrl+keypad Enter stops, in the editor and outside it.
    void ctrlReturnStartsAndStops()
    {
        UI(startReturning());
        const QString program = u"repeat 36 [forward 10 right 10]"_s;
        UI(ui->chooseSpeed(false));
        UI(ui->replaceText(u"codeEditor"_s, program));
        for (const bool editorFocused : {true, false}) {
            if (!editorFocused)
                UI(ui->click(u"hintButton"_s)); // takes the focus away from the editor
            QCOMPARE(ui->hasFocus(u"codeEditor"_s), editorFocused);

            ui->key(Qt::Key_Return, Qt::ControlModifier);
            QVERIFY(ui->studio().running());
            QCOMPARE(ui->text(u"runButton"_s), u"Stop"_s);
            QVERIFY(!ui->isEnabled(u"codeEditor"_s));
            QVERIFY(!ui->isEnabled(u"stepButton"_s));
            QVERIFY(!ui->isEnabled(u"chip_0"_s));
            QVERIFY(!ui->isEnabled(u"saveCreationButton"_s));
            QVERIFY(!ui->isEnabled(u"exportButton"_s));
            QVERIFY(ui->isEnabled(u"runButton"_s));
            UI(ui->waitFor([&] { return ui->studio().strokes().size() >= 2; }, u"a few lines"_s));

            ui->key(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
            QVERIFY(!ui->studio().running());
            const qsizetype drawn = ui->studio().strokes().size();
            QVERIFY(drawn < 36);
            QTest::qWait(2 * qRound(Studio::slowestSpeed * 1000));
            QCOMPARE(ui->studio().strokes().size(), drawn); // really stopped, not paused
            QCOMPARE(ui->text(u"runButton"_s), u"Run code"_s);
            QVERIFY(ui->isEnabled(u"codeEditor"_s));
            QCOMPARE(ui->studio().code(), program); // the key did not also type a line break
        }
    }

    // A mission suggests its own title; cancel keeps the typed one for later but saves nothing;
    // a blank title cannot be saved; the button and Return in the field both save.
    void saveCreation()
    {
        UI(startReturning());
        UI(ui->chooseSpeed(true));
        const QString program = u"forward 30\nright 45\nforward 30"_s;
        UI(ui->replaceText(u"codeEditor"_s, program));
        QVERIFY(runToEnd());

        for (const QString &typed : {u"Half done"_s, u"   "_s}) {
            UI(ui->clickForSheet(u"saveCreationButton"_s, u"savingSheet"_s));
            QCOMPARE(ui->text(u"titleField"_s), u"Baby steps"_s);
            // Ready for a new name at once: focused, the suggestion selected.
            QVERIFY(ui->hasFocus(u"titleField"_s));
            QCOMPARE(ui->property(u"titleField"_s, "selectedText").toString(), u"Baby steps"_s);
            UI(ui->replaceText(u"titleField"_s, typed));
            if (typed.trimmed().isEmpty())
                break;
            UI(ui->clickForSheet(u"cancelSaveButton"_s, u"savingSheet"_s, false));
            QCOMPARE(ui->studio().creationTitle(), typed);
            QVERIFY(ui->studio().creations().isEmpty());
        }
        QVERIFY(!ui->isEnabled(u"saveToGalleryButton"_s));
        ui->key(Qt::Key_Return);
        QTest::qWait(50);
        QVERIFY(ui->isSheetOpen(u"savingSheet"_s));
        QVERIFY(ui->studio().creations().isEmpty());

        UI(ui->replaceText(u"titleField"_s, u"Rainbow road"_s));
        ui->key(Qt::Key_Return); // the journey saves with the button
        UI(ui->waitForSheet(u"savingSheet"_s, false));
        QCOMPARE(ui->studio().creations().size(), 1);
        QCOMPARE(ui->studio().creations().constFirst().title, u"Rainbow road"_s);
        QCOMPARE(ui->studio().creations().constFirst().code, program);
        QCOMPARE(ui->text(u"statusLine"_s), u"\u2018Rainbow road\u2019 is safe in your gallery."_s);
    }

    // Each button opens its sheet alone through the studio's flag of the same name, Escape closes it,
    // and the flag alone opens it again.
    void sheetRouting()
    {
        UI(startReturning());
        const QList<std::pair<QString, QString>> routes{
            {u"galleryButton"_s, u"gallerySheet"_s},         {u"treasuresButton"_s, u"collectionSheet"_s},
            {u"profileButton"_s, u"playerSettingsSheet"_s},  {u"mapButton"_s, u"mapSheet"_s},
            {u"handbookSidebarButton"_s, u"guideSheet"_s},   {u"handbookButton"_s, u"guideSheet"_s},
            {u"welcomeGuideButton"_s, u"welcomeSheet"_s},    {u"companionEditButton"_s, u"companionSettingsSheet"_s}};
        for (const auto &[button, sheet] : routes) {
            const QByteArray flag = sheet.chopped(5).toLatin1();
            QVERIFY2(!ui->studio().property(flag.constData()).toBool(), flag.constData());
            UI(ui->click(button));
            QVERIFY2(ui->studio().property(flag.constData()).toBool(), flag.constData());
            UI(ui->waitForSheet(sheet, true));
            for (const QString &other : allSheets) {
                if (other != sheet)
                    QVERIFY2(!ui->isSheetOpen(other), qPrintable(other + u" opened too"_s));
            }

            ui->key(Qt::Key_Escape);
            UI(ui->waitForSheet(sheet, false));
            QVERIFY2(!ui->studio().property(flag.constData()).toBool(), flag.constData());
            ui->studio().setProperty(flag.constData(), true);
            UI(ui->waitForSheet(sheet, true));
            ui->studio().setProperty(flag.constData(), false);
            UI(ui->waitForSheet(sheet, false));
        }
        // Ctrl+Q quits; only the engine's request is counted here, so that the test goes on.
        QQmlEngine *engine = qmlEngine(ui->window());
        QObject::disconnect(engine, &QQmlEngine::quit, nullptr, nullptr);
        QSignalSpy quits(engine, &QQmlEngine::quit);
        ui->key(Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(quits.count(), 1);
    }

    // Qt's own save dialog, where the desktop offers none: clicking a folder and opening it keep
    // the picture's name, and Return in the name field writes the picture into the folder on show.
    void exportDialogKeepsTheName()
    {
        UI(startReturning());
        const QString trips = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation) + u"/Trips"_s;
        QVERIFY(QDir().mkpath(trips));
        ui->studio().setCode(u"fd 40"_s);
        UI(runToEnd());
        UI(ui->click(u"exportButton"_s));
        for (const bool open : {false, true}) {
            UI(ui->waitFor([&] { return ui->isShown(u"fileDialogDelegate0"_s); }, u"the folder in the list"_s));
            QQuickItem *row = ui->item(u"fileDialogDelegate0"_s);
            const QPoint at = row->mapToScene(row->boundingRect().center()).toPoint();
            open ? QTest::mouseDClick(ui->window(), Qt::LeftButton, {}, at) : QTest::mouseClick(ui->window(), Qt::LeftButton, {}, at);
            QCOMPARE(ui->text(u"fileNameTextField"_s), u"Marble Cove creation.png"_s);
        }
        UI(ui->waitFor([&] { return !ui->isShown(u"fileDialogDelegate0"_s); }, u"the empty folder"_s));
        ui->item(u"fileNameTextField"_s)->forceActiveFocus();
        QTest::keyClick(ui->window(), Qt::Key_Return);
        UI(ui->waitFor([&] { return QFileInfo::exists(trips + u"/Marble Cove creation.png"_s); }, u"the picture"_s));
    }
};

QTEST_MAIN(StudioUiTest)
#include "tst_studio_ui.moc"
