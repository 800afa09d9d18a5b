// Typing code and moving around by keyboard: undo in small steps, Tab that never traps, a
// visible focus ring, long lines that wrap instead of running off the edge.
#include "UiHarness.h"

#include <QTest>

using namespace Qt::StringLiterals;

class EditingTest : public UiTest
{
    Q_OBJECT

    bool ringShown(const QString &name) const
    {
        auto *ring = ui->item(name) ? ui->item(name)->findChild<QQuickItem *>(u"focusRing"_s) : nullptr;
        return ring && ring->isVisible();
    }

private slots:
    // Undo takes back a word or a line at a time, and the saved code follows each step.
    void undoStepsBackByWords()
    {
        UI(startReturning());
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

    // Tab indents only while the child is typing; otherwise, and with Escape or Ctrl+Tab, the
    // focus moves on, and the control it reaches wears the ring.
    void tabLeavesTheEditor()
    {
        UI(startReturning());
        // The editor opens on the saved code, and opening it changes nothing.
        QVERIFY(!ui->studio().code().isEmpty());
        QCOMPARE(ui->text(u"codeEditor"_s), ui->studio().code());
        UI(ui->click(u"codeEditor"_s));
        ui->key(Qt::Key_Tab);
        QVERIFY(!ui->hasFocus(u"codeEditor"_s));
        QVERIFY(ui->hasFocus(u"runButton"_s));
        QVERIFY(ringShown(u"runButton"_s));
        ui->key(Qt::Key_Backtab);
        QVERIFY(ui->hasFocus(u"codeEditor"_s));

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
    }

    // The companion cards take the focus like buttons and choose with Space or Return.
    void companionCardsByKeyboard()
    {
        UI(startReturning());
        QQuickItem *card = ui->item(u"companionCard_2"_s);
        QVERIFY(card);
        card->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(ringShown(u"companionCard_2"_s));
        ui->key(Qt::Key_Space);
        QCOMPARE(ui->studio().turtle(), 2);
        ui->item(u"companionCard_1"_s)->forceActiveFocus(Qt::TabFocusReason);
        ui->key(Qt::Key_Return);
        QCOMPARE(ui->studio().turtle(), 1);
    }

    // A long line wraps inside the editor: nothing runs past its right edge, before or after a run.
    void longLinesWrap()
    {
        UI(startReturning());
        UI(ui->click(u"freePlayButton"_s));
        UI(ui->replaceText(u"codeEditor"_s, u"repeat 36 [forward 120 right 170 forward 20 right 10]"_s));
        QQuickItem *editor = ui->item(u"codeEditor"_s);
        QVERIFY(editor->property("lineCount").toInt() > 1);
        QVERIFY(editor->property("contentWidth").toReal() <= editor->width());
        UI(ui->chooseSpeed(true));
        UI(ui->click(u"runButton"_s));
        UI(ui->waitFor([&] { return !ui->studio().running(); }, u"the run to end"_s));
        auto *view = editor->parentItem() ? editor->parentItem()->parentItem() : nullptr;
        QVERIFY(view && view->inherits("QQuickFlickable"));
        QCOMPARE(view->property("contentX").toReal(), 0.0);
    }

};

QTEST_MAIN(EditingTest)
#include "tst_editing.moc"
