#include "app/Studio.h"
#include "support/StudioFixture.h"

#include <QSignalSpy>
#include <QAbstractEventDispatcher>
#include <QTest>
#include <QThread>
#include <QTimer>

namespace {

const QString threeSteps = QStringLiteral("forward 10\nright 90\nforward 20");

QTimer *pauseOf(Studio &studio)
{
    return studio.findChild<QTimer *>(QStringLiteral("runPause"));
}

} // namespace

class DriverTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<StudioFixture> fixture;

private slots:
    void init()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        fixture = std::make_unique<StudioFixture>();
    }

    void runDrawsFirstInstructionAtOnceAndFinishesOnce()
    {
        Studio &studio = fixture->studio;
        studio.setCode(threeSteps);
        studio.setSpeed(Studio::fastestSpeed);
        studio.setTurtle(2);
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        studio.run();
        QVERIFY(studio.running());
        QCOMPARE(studio.stepIndex(), 1);
        QCOMPARE(studio.stepTotal(), 3);
        QCOMPARE(studio.message(), QStringLiteral("Orbit is following your code…"));
        QCOMPARE(studio.plannedStrokes().size(), 2);
        QCOMPARE(studio.drawingSource(), QString());

        QTRY_COMPARE(finished.count(), 1);
        QVERIFY(!studio.running());
        QCOMPARE(studio.stepIndex(), 3);
        QCOMPARE(studio.strokes(), studio.plannedStrokes());
        QCOMPARE(studio.drawingSource(), threeSteps);
        QTest::qWait(60);
        QCOMPARE(finished.count(), 1);
    }

    void stopThenStepContinuesWhereTheRunStopped()
    {
        Studio &studio = fixture->studio;
        studio.setCode(threeSteps);
        studio.setSpeed(Studio::slowestSpeed);
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        studio.run();
        studio.stop();
        QVERIFY(!studio.running());
        QCOMPARE(studio.stepIndex(), 1);
        QCOMPARE(studio.message(), QStringLiteral("Clover is following your code…"));

        studio.step();
        QCOMPARE(studio.stepIndex(), 2);
        QCOMPARE(studio.strokes().size(), 1);
        QCOMPARE(studio.message(), QStringLiteral("Step 2 of 3: RIGHT 90"));
        studio.step();
        QCOMPARE(studio.currentCommand(), QStringLiteral("FORWARD 20"));
        QCOMPARE(studio.message(), QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint."));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(studio.drawingSource(), threeSteps);
        QTest::qWait(400);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(studio.stepIndex(), 3);
    }

    void steppingPastTheEndStartsAgainOnAFreshCanvas()
    {
        Studio &studio = fixture->studio;
        studio.setCode(threeSteps);
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        const QStringList expected{QStringLiteral("Step 1 of 3: FORWARD 10"), QStringLiteral("Step 2 of 3: RIGHT 90"),
                                   // the last step hands over to the mission check, which speaks next
                                   QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint."),
                                   QStringLiteral("Step 1 of 3: FORWARD 10")};
        for (int i = 0; i < expected.size(); ++i) {
            studio.step();
            QCOMPARE(studio.message(), expected.at(i));
            QCOMPARE(finished.count(), i >= 2 ? 1 : 0);
        }
        QCOMPARE(studio.strokes().size(), 1);
        QCOMPARE(studio.point(), QPointF(0, -10));
        QCOMPARE(studio.drawingSource(), QString());
    }

    void editingBetweenStepsStartsOver()
    {
        Studio &studio = fixture->studio;
        studio.setCode(threeSteps);
        studio.step();
        studio.step();
        studio.setCode(QStringLiteral("back 5 left 45"));
        studio.step();
        QCOMPARE(studio.message(), QStringLiteral("Step 1 of 2: BACK 5"));
        QCOMPARE(studio.heading(), 0.0);
        QCOMPARE(studio.strokes().size(), 1);
        QCOMPARE(studio.strokes().first().to, QPointF(0, 5));
        QCOMPARE(studio.queuedSource(), studio.code());
    }

    void aSecondRunRestartsFromAFreshCanvas()
    {
        Studio &studio = fixture->studio;
        studio.setCode(QStringLiteral("repeat 4 [fd 10 rt 90]"));
        studio.setSpeed(Studio::fastestSpeed);
        studio.run();
        QTRY_VERIFY(studio.stepIndex() >= 4);
        studio.run();
        QCOMPARE(studio.stepIndex(), 1);
        QCOMPARE(studio.strokes().size(), 1);
        QVERIFY(studio.running());
        studio.stop();
    }

    void speedChangesTheNextPause()
    {
        Studio &studio = fixture->studio;
        studio.setCode(QStringLiteral("fd 1 fd 1 fd 1 fd 1"));
        studio.setSpeed(0.2);
        QTimer *pause = pauseOf(studio);
        QVERIFY(pause);
        // Each new step shows the pause that was armed after the step before it: what was left of
        // that step's `speed` once it had been carried out.
        QList<int> pauses;
        connect(&studio, &Studio::stepIndexChanged, &studio, [&] {
            if (studio.stepIndex() > 1)
                pauses.append(pause->interval());
            if (studio.stepIndex() == 2)
                studio.setSpeed(0.03);
        });
        studio.run();
        QVERIFY(pause->isActive());
        QCOMPARE(pause->timerType(), Qt::PreciseTimer);
        QTRY_COMPARE(studio.stepIndex(), 4);
        QCOMPARE(pauses.size(), 3);
        QCOMPARE_GT(pauses.at(0), 30);
        QCOMPARE_LE(pauses.at(0), 200);
        QCOMPARE_LE(pauses.at(1), 30);
        QCOMPARE_LE(pauses.at(2), 30);
        studio.stop();
        QVERIFY(!pause->isActive());
    }

    // A run keeps time by the clock: it ends with the very drawing stepping makes, and after the
    // window is held up it catches up at once instead of falling behind.
    void aRunDrawsWhatSteppingDrawsAndCatchesUp()
    {
        const QString program = QStringLiteral("repeat 12 [ fd 10 rt 31 color pink width 3 ]");
        StudioFixture stepped;
        stepped.studio.setCode(program);
        do
            stepped.studio.step();
        while (stepped.studio.stepIndex() < stepped.studio.stepTotal());

        StudioFixture fixture;
        Studio &studio = fixture.studio;
        studio.setCode(program);
        studio.setSpeed(Studio::fastestSpeed);
        int wakeUps = 0;
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &studio, [&] { ++wakeUps; });
        QList<int> wakeUpOfStep;
        connect(&studio, &Studio::stepIndexChanged, &studio, [&] {
            wakeUpOfStep.append(wakeUps);
            if (studio.stepIndex() == 3)
                QThread::msleep(200);
        });
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        studio.run();
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(studio.strokes(), stepped.studio.strokes());
        QCOMPARE(studio.point(), stepped.studio.point());
        QCOMPARE(studio.heading(), stepped.studio.heading());
        // Twenty instructions fell due during the hold-up; they are carried out in the next beat.
        QCOMPARE_GT(wakeUpOfStep.count(wakeUpOfStep.at(2)), 10);
    }

    void speedStaysWithinTheSlider_data()
    {
        QTest::addColumn<double>("requested");
        QTest::addColumn<double>("kept");
        QTest::newRow("between") << 0.2 << 0.2;
        QTest::newRow("zero") << 0.0 << 0.01;
        QTest::newRow("too slow") << 5.0 << 0.35;
    }

    void speedStaysWithinTheSlider()
    {
        QFETCH(double, requested);
        QFETCH(double, kept);
        Studio &studio = fixture->studio;
        studio.setSpeed(requested);
        QCOMPARE(studio.speed(), kept);
    }

    // A screen reacting to a stroke may stop the run, or start it again, from inside the notification:
    // a stopped run never finishes and a restarted one finishes once.
    void aRunStoppedOrRestartedFromANotification_data()
    {
        QTest::addColumn<bool>("restart");
        QTest::newRow("stopped") << false;
        QTest::newRow("restarted") << true;
    }

    void aRunStoppedOrRestartedFromANotification()
    {
        QFETCH(bool, restart);
        Studio &studio = fixture->studio;
        studio.setCode(QStringLiteral("fd 1 fd 1 fd 1"));
        studio.setSpeed(Studio::fastestSpeed);
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        bool reacted = false;
        connect(&studio, &Studio::stepIndexChanged, &studio, [&] {
            if (studio.stepIndex() == 2 && !std::exchange(reacted, true))
                restart ? studio.run() : studio.stop();
        });
        studio.run();
        QTRY_VERIFY(reacted && !studio.running());
        QTest::qWait(100);
        QCOMPARE(finished.count(), restart ? 1 : 0);
        QCOMPARE(studio.stepIndex(), restart ? 3 : 2);
        QCOMPARE(studio.strokes().size(), restart ? 3 : 2);
        QVERIFY(!pauseOf(studio)->isActive());
    }

    void aFaultyOrEmptyProgramOnlyChangesTheMessage_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<bool>("byStep");
        QTest::addColumn<QString>("message");
        const QString unknown = QStringLiteral("I don't know ‘jump’ yet. Check the command guide or define it with TO … END.");
        const QString empty = QStringLiteral("Add a command first. Try FORWARD 100.");
        QTest::newRow("unknown word, run") << QStringLiteral("fd 10 jump") << false << unknown;
        QTest::newRow("unknown word, step") << QStringLiteral("fd 10 jump") << true << unknown;
        QTest::newRow("empty, run") << QString() << false << empty;
        QTest::newRow("comments only, step") << QStringLiteral("; just a note\n  ") << true << empty;
    }

    void aFaultyOrEmptyProgramOnlyChangesTheMessage()
    {
        QFETCH(QString, program);
        QFETCH(bool, byStep);
        QFETCH(QString, message);
        Studio &studio = fixture->studio;
        studio.setCode(threeSteps);
        studio.step();
        studio.step();
        const QList<Stroke> strokes = studio.strokes();
        const QList<Stroke> planned = studio.plannedStrokes();
        QSignalSpy finished(&studio, &Studio::drawingFinished);

        studio.setCode(program);
        byStep ? studio.step() : studio.run();
        QCOMPARE(studio.message(), message);
        QCOMPARE(studio.strokes(), strokes);
        QCOMPARE(studio.plannedStrokes(), planned);
        QCOMPARE(studio.stepIndex(), 2);
        QCOMPARE(studio.stepTotal(), 3);
        QCOMPARE(studio.queuedSource(), threeSteps);
        QCOMPARE(studio.currentCommand(), QStringLiteral("RIGHT 90"));
        QVERIFY(!studio.running());
        QCOMPARE(finished.count(), 0);
    }

    void currentCommandSpeaksTheLocale_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("label");
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        const QLocale german(QLocale::German, QLocale::Germany);
        QTest::newRow("fraction") << english << "rt 2.5" << "RIGHT 2.5";
        QTest::newRow("grouping") << english << "fd 10000" << "FORWARD 10,000";
        QTest::newRow("many decimals") << english << "left 33.3333333" << "LEFT 33.333";
        QTest::newRow("german fraction") << german << "rt 2.5" << "RIGHT 2,5";
        QTest::newRow("german grouping") << german << "seth 10000" << "SETHEADING 10.000";
        QTest::newRow("width") << german << "setpensize 12" << "WIDTH 12";
        QTest::newRow("colour") << german << "setpc \"Pink" << "COLOR pink";
        QTest::newRow("plain") << english << "pu" << "PENUP";
    }

    void currentCommandSpeaksTheLocale()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, program);
        QFETCH(QString, label);
        QLocale::setDefault(locale);
        Studio &studio = fixture->studio;
        studio.setCode(program);
        studio.step();
        QCOMPARE(studio.currentCommand(), label);
    }

    void resetEmptiesCanvasQueueAndCounters()
    {
        Studio &studio = fixture->studio;
        studio.setCode(threeSteps);
        for (int i = 0; i < 3; ++i)
            studio.step();
        const QString message = studio.message();
        QSignalSpy strokesChanged(&studio, &Studio::strokesChanged);
        studio.reset();
        QCOMPARE(strokesChanged.count(), 1);
        QVERIFY(studio.strokes().isEmpty() && studio.plannedStrokes().isEmpty());
        QCOMPARE(std::tuple(studio.point(), studio.heading(), studio.stepIndex(), studio.stepTotal()),
                 std::tuple(QPointF(), 0.0, 0, 0));
        QCOMPARE(studio.currentCommand() + studio.drawingSource() + studio.queuedSource(), QString());
        QCOMPARE(studio.message(), message);
    }

    void appendedExamplesGoOnTheirOwnLine_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("after");
        QTest::newRow("empty code starts with an empty line") << QString() << "\nright 90\n";
        QTest::newRow("no final line break") << "forward 50" << "forward 50\nright 90\n";
        QTest::newRow("final line break kept single") << "forward 50\n" << "forward 50\nright 90\n";
    }

    void appendedExamplesGoOnTheirOwnLine()
    {
        QFETCH(QString, code);
        QFETCH(QString, after);
        Studio &studio = fixture->studio;
        studio.setCode(code);
        studio.appendCode(QStringLiteral("right 90"));
        QCOMPARE(studio.code(), after);
        QCOMPARE(fixture->store.string(QStringLiteral("code0")), after); // an edit like any other
    }

    void turtleFieldsNotifyOnlyWhenTheyChange()
    {
        Studio &studio = fixture->studio;
        QSignalSpy strokes(&studio, &Studio::strokesChanged);
        QSignalSpy point(&studio, &Studio::pointChanged);
        QSignalSpy heading(&studio, &Studio::headingChanged);
        studio.apply(Instruction{QStringLiteral("penup"), 0, {}});
        studio.apply(Instruction{QStringLiteral("forward"), 10, {}});
        studio.apply(Instruction{QStringLiteral("right"), 0, {}});
        studio.apply(Instruction{QStringLiteral("pendown"), 0, {}});
        studio.apply(Instruction{QStringLiteral("right"), 90, {}});
        QCOMPARE(strokes.count(), 0);
        QCOMPARE(point.count(), 1);
        QCOMPARE(heading.count(), 1);
        QVERIFY(!studio.simulate(QStringLiteral("fd 50 rt 90 fd 50")).isEmpty());
        QCOMPARE(studio.point(), QPointF(0, -10)); // simulate leaves the turtle where it was
        QCOMPARE(studio.heading(), 90.0);
        QVERIFY(studio.pen());
    }
};

QTEST_GUILESS_MAIN(DriverTest)
#include "tst_driver.moc"
