// Typing code and moving around by keyboard: undo in small steps, Tab that never traps, a
// visible focus ring, long lines that wrap instead of running off the edge; and the marks that
// link the code, the run, the drawing and the mission, seen and heard.
#include "UiHarness.h"

#include <QSignalSpy>
#include <QQuickTextDocument>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

using namespace Qt::StringLiterals;

class EditingTest : public UiTest
{
    Q_OBJECT

    // A recipe drawing one line, run twice in a loop and once alone, defined after its calls: five strokes.
    const QString linked = u"repeat 2 [side fd 5]\nside ; [x]\nto side fd 20 rt 90 end"_s;

    // The focus ring on screen lies around the named control.
    bool ringAround(const QString &name) const
    {
        QQuickItem *ring = ui->item(u"focusRing"_s), *control = ui->item(name);
        return ring && control && ring->isVisible()
               && ring->mapRectToScene(ring->boundingRect()).contains(control->mapToScene(control->boundingRect().center()));
    }

private slots:
    // By keyboard: Tab indents only while the child is typing; otherwise, and with Escape or
    // Ctrl+Tab, the focus moves on (where to, the walk below shows).
    void keyboard()
    {
        UI(startReturning());
        // The editor opens on the saved code, and opening it changes nothing.
        QVERIFY(!ui->studio().code().isEmpty());
        QCOMPARE(ui->text(u"codeEditor"_s), ui->studio().code());
        UI(ui->click(u"codeEditor"_s));
        const QString code = ui->studio().code();
        ui->key(Qt::Key_End, Qt::ControlModifier);
        UI(ui->type(u"x"_s));
        ui->key(Qt::Key_Tab);
        QCOMPARE(ui->studio().code(), code + u"x  "_s);
        QVERIFY(ui->hasFocus(u"codeEditor"_s));
        for (const auto &[key, modifiers] : {std::pair{Qt::Key_Escape, Qt::NoModifier},
                                             std::pair{Qt::Key_Tab, Qt::ControlModifier}}) {
            UI(ui->click(u"codeEditor"_s));
            UI(ui->type(u"y"_s));
            ui->key(key, modifiers);
            QVERIFY(!ui->hasFocus(u"codeEditor"_s));
        }

        // The companion cards take the focus like buttons and choose with Space or Return.
        ui->item(u"companionCard_2"_s)->forceActiveFocus(Qt::TabFocusReason);
        ui->key(Qt::Key_Space);
        QCOMPARE(ui->studio().turtle(), 2);
        ui->item(u"companionCard_1"_s)->forceActiveFocus(Qt::TabFocusReason);
        ui->key(Qt::Key_Return);
        QCOMPARE(ui->studio().turtle(), 1);

        // Undo takes back a word or a line at a time, and the saved code follows each step.
        UI(ui->click(u"freePlayButton"_s));
        const QString before = ui->studio().code();
        UI(ui->replaceText(u"codeEditor"_s, QString()));
        UI(ui->type(u"forward 80\nright 90"_s));
        const QStringList steps{u"forward 80\nright "_s, u"forward 80\n"_s, u"forward 80"_s, u"forward "_s,
                                QString(), before};
        for (const QString &expected : steps) {
            ui->key(Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(ui->studio().code(), expected);
            QCOMPARE(ui->store().string(u"freeCode"_s).value_or(QString()), expected);
        }

        // A chip's example comes off in one step; code from another mission has no history here.
        UI(ui->click(u"chip_0"_s));
        UI(ui->click(u"codeEditor"_s));
        ui->key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(ui->studio().code(), before);
        UI(ui->click(u"mission_0"_s));
        const QString missionCode = ui->studio().code();
        UI(ui->click(u"codeEditor"_s));
        ui->key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(ui->studio().code(), missionCode);
    }

    // Keys alone: Tab goes through the header, the sidebar, the editor and its controls, then the
    // stage, each control in its ring; Return and Space press it. Two sheets are walked the same way
    // and left with Escape or a button, and the focus comes back to the studio.
    void keyboardWalk()
    {
        UI(startReturning({0}));
        ui->studio().setCode(u"fd 40"_s);
        ui->studio().run();
        UI(ui->waitFor([&] { return !ui->studio().running(); }, u"the drawing"_s));
        // The first stop that Tab missed, or that showed no ring.
        const auto walk = [&](const QStringList &stops) {
            for (const QString &stop : stops) {
                ui->key(Qt::Key_Tab);
                if (!ui->hasFocus(stop) || !ringAround(stop))
                    return stop;
            }
            return QString();
        };
        QCOMPARE(walk({u"galleryButton"_s, u"treasuresButton"_s, u"profileButton"_s, u"mapButton"_s,
                       u"worldPicker"_s, u"mission_0"_s, u"mission_1"_s, u"freePlayButton"_s,
                       u"handbookSidebarButton"_s, u"welcomeGuideButton"_s, u"handbookButton"_s, u"codeEditor"_s,
                       u"runButton"_s, u"stepButton"_s, u"clearButton"_s, u"speedSlider"_s, u"targetSwitch"_s}),
                 QString());
        ui->key(Qt::Key_Return);
        QVERIFY(ui->studio().showTarget());
        QCOMPARE(walk({u"hintButton"_s, u"chip_0"_s, u"chip_1"_s, u"chip_2"_s, u"themeMenuButton"_s,
                       u"differenceButton"_s, u"saveCreationButton"_s, u"exportButton"_s, u"companionEditButton"_s,
                       u"companionCard_0"_s, u"companionCard_1"_s, u"companionCard_2"_s, u"galleryButton"_s}),
                 QString());

        ui->key(Qt::Key_Return);
        UI(ui->waitForSheet(u"gallerySheet"_s, true));
        QCOMPARE(walk({u"galleryDoneButton"_s, u"openPictureButton"_s, u"goToStudioButton"_s}), QString());
        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(u"gallerySheet"_s, false));
        QCOMPARE(walk({u"treasuresButton"_s, u"profileButton"_s, u"mapButton"_s}), QString());
        ui->key(Qt::Key_Space);
        UI(ui->waitForSheet(u"mapSheet"_s, true));
        QCOMPARE(walk({u"mapDoneButton"_s, u"exploreButton_0"_s}), QString());
        ui->key(Qt::Key_Return);
        UI(ui->waitForSheet(u"mapSheet"_s, false));
        QCOMPARE(ui->studio().mission(), 1);
        QVERIFY(ui->hasFocus(u"mapButton"_s));
    }

    // Beside a bracket its partner is marked; on a command, the strokes it drew stand out on the
    // stage. Calls before their recipe's definition are coloured as recipes, until it goes.
    void cursorLinks_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QVariantList>("brackets");
        QTest::addColumn<QList<int>>("lit");
        QTest::newRow("a repeat lights all its loop drew") << u"repe"_s << QVariantList{} << QList<int>{0, 1, 2, 3};
        QTest::newRow("after [") << u"2 ["_s << QVariantList{linked.indexOf(u'['), linked.indexOf(u']')} << QList<int>{};
        QTest::newRow("before ]") << u"fd 5"_s << QVariantList{linked.indexOf(u']'), linked.indexOf(u'[')} << QList<int>{};
        QTest::newRow("a [ in a comment") << u"; ["_s << QVariantList{} << QList<int>{};
        QTest::newRow("a command in a recipe, every time") << u"to side f"_s << QVariantList{} << QList<int>{0, 2, 4};
        QTest::newRow("a recipe's name") << u"to s"_s << QVariantList{} << QList<int>{0, 2, 4};
        QTest::newRow("a recipe call") << u"]\nsi"_s << QVariantList{} << QList<int>{4};
    }

    void cursorLinks()
    {
        QFETCH(QString, before);
        QFETCH(QVariantList, brackets);
        QFETCH(QList<int>, lit);
        const auto roleOfLine = [&](int line) {
            const QTextDocument *text = ui->property(u"codeEditor"_s, "textDocument").value<QQuickTextDocument *>()->textDocument();
            const QColor first = text->findBlockByNumber(line).layout()->formats().value(0).format.foreground().color();
            return ui->property(u"codeHighlighter"_s, "colors").toMap().key(first.name());
        };
        UI(startReturning());
        UI(ui->chooseSpeed(true));
        UI(ui->replaceText(u"codeEditor"_s, linked));
        QCOMPARE(roleOfLine(1), u"recipe"_s);
        QVERIFY(runToEnd());
        UI(ui->click(u"codeEditor"_s));
        ui->item(u"codeEditor"_s)->setProperty("cursorPosition", int(linked.indexOf(before) + before.size()));
        QCOMPARE(ui->property(u"bracketMarks"_s, "model").toList(), brackets);
        QCOMPARE(ui->property(u"stageMarks"_s, "emphasis").value<QList<int>>(), lit);
        QMetaObject::invokeMethod(ui->item(u"codeEditor"_s), "remove", Q_ARG(int, int(linked.indexOf(u"\nto"_s))),
                                  Q_ARG(int, int(linked.size())));
        QCOMPARE(roleOfLine(1), u"unknown"_s);
    }

    // On a mission: an error is heard once, with its line, and an edit says nothing more; a long
    // line wraps inside the editor; the word a Step carried out is marked until the next edit, and
    // no mark outlives a run; a near miss shows the target's lines that are missing and the drawn
    // ones it lacks, until the next edit.
    void missionEdits()
    {
        UI(startReturning(range(0, 8)));
        ui->studio().select(8);
        QObject *alert = nullptr;
        for (QObject *child : ui->item(u"statusLine"_s)->children())
            alert = child->inherits("QQuickAccessibleAttached") ? child : alert;
        QSignalSpy heard(alert, SIGNAL(nameChanged()));
        const QString code = u"repeat 5 [fd 80 rt 70] ; five turns, each of them the same"_s;
        UI(ui->replaceText(u"codeEditor"_s, code + u"\njump"_s));
        UI(ui->click(u"runButton"_s));
        QCOMPARE(alert->property("name").toString(), u"Line 2: "_s + ui->studio().message());
        UI(ui->replaceText(u"codeEditor"_s, code));
        QCOMPARE(heard.count(), 1);
        QQuickItem *editor = ui->item(u"codeEditor"_s);
        QVERIFY(editor->property("lineCount").toInt() > 1);
        QVERIFY(editor->property("contentWidth").toReal() <= editor->width());

        UI(ui->click(u"stepButton"_s));
        QVERIFY(ui->isShown(u"runMark"_s));
        UI(ui->click(u"codeEditor"_s));
        UI(ui->type(u" "_s));
        QVERIFY(!ui->isShown(u"runMark"_s));
        UI(ui->click(u"runButton"_s));
        UI(ui->waitFor([&] { return ui->isShown(u"runMark"_s); }, u"the running word"_s));
        UI(ui->waitFor([&] { return !ui->studio().running(); }, u"the run to end"_s));
        QVERIFY(!ui->isShown(u"runMark"_s));
        QCOMPARE(editor->parentItem()->parentItem()->property("contentX"), QVariant(0.0));

        UI(ui->click(u"differenceButton"_s));
        QCOMPARE(ui->text(u"differenceSentence"_s), u"Your turtle turned a different amount."_s);
        QCOMPARE(ui->property(u"stageMarks"_s, "extra").value<QList<Stroke>>().size(), 4);
        UI(ui->click(u"codeEditor"_s));
        UI(ui->type(u" "_s));
        QVERIFY(ui->property(u"stageMarks"_s, "extra").value<QList<Stroke>>().isEmpty());
    }
};

QTEST_MAIN(EditingTest)
#include "tst_editing.moc"
