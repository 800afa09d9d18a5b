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

    // Stepping goes on where a run stopped; past the end, or after an edit, it starts over on a fresh canvas.
    void steppingContinuesARunAndStartsOver()
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
        // the last step hands over to the mission check, which speaks next
        QCOMPARE(studio.message(), QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint."));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(studio.drawingSource(), threeSteps);
        QTest::qWait(400);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(studio.stepIndex(), 3);

        studio.step();
        QCOMPARE(studio.message(), QStringLiteral("Step 1 of 3: FORWARD 10"));
        QCOMPARE(studio.strokes().size(), 1);
        QCOMPARE(studio.point(), QPointF(0, -10));
        QCOMPARE(studio.drawingSource(), QString());
        QCOMPARE(finished.count(), 1);

        studio.step(); // turned right
        studio.setCode(QStringLiteral("back 5 left 45"));
        studio.step();
        QCOMPARE(studio.message(), QStringLiteral("Step 1 of 2: BACK 5"));
        QCOMPARE(studio.heading(), 0.0);
        QCOMPARE(studio.strokes().size(), 1);
        QCOMPARE(studio.strokes().first().to, QPointF(0, 5));
        QCOMPARE(studio.queuedSource(), studio.code());

        // Reset empties the canvas, the queue and the counters, and leaves the message.
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

    void speedChangesTheNextPause()
    {
        Studio &studio = fixture->studio;
        for (const auto &[requested, kept] : {std::pair(0.0, 0.01), std::pair(5.0, 0.35), std::pair(0.2, 0.2)}) {
            studio.setSpeed(requested); // kept within the slider
            QCOMPARE(studio.speed(), kept);
        }
        studio.setCode(QStringLiteral("fd 1 fd 1 fd 1 fd 1"));
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
        stepToEnd(stepped.studio);

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

    // A screen reacting to a stroke may stop the run, or start it again, from inside the notification:
    // a stopped run never finishes and a restarted one finishes once.
    void aRunStoppedOrRestartedFromANotification()
    {
        for (const bool restart : {false, true}) {
            StudioFixture fresh;
            Studio &studio = fresh.studio;
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
    }

    // An unknown word or nothing to carry out, whether run or stepped, leaves the drawing and the queue.
    void aFaultyOrEmptyProgramOnlyChangesTheMessage()
    {
        const QString unknown = QStringLiteral("I don't know ‘jump’ yet. Check the command guide or define it with TO … END.");
        const QString empty = QStringLiteral("Add a command first. Try FORWARD 100.");
        Studio &studio = fixture->studio;
        for (const auto &[program, byStep, message] :
             {std::tuple(QStringLiteral("fd 10 jump"), false, unknown), std::tuple(QStringLiteral("fd 10 jump"), true, unknown),
              std::tuple(QString(), false, empty), std::tuple(QStringLiteral("; just a note\n  "), true, empty)}) {
            studio.reset();
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
    }

    void currentCommandSpeaksTheLocale()
    {
        const QLocale english(QLocale::English, QLocale::UnitedStates), german(QLocale::German, QLocale::Germany);
        for (const auto &[locale, program, label] :
             {std::tuple(english, "rt 2.5", "RIGHT 2.5"), std::tuple(english, "fd 10000", "FORWARD 10,000"),
              std::tuple(english, "left 33.3333333", "LEFT 33.333"), std::tuple(german, "rt 2.5", "RIGHT 2,5"),
              std::tuple(german, "seth 10000", "SETHEADING 10.000"), std::tuple(german, "setpensize 12", "WIDTH 12"),
              std::tuple(german, "setpc \"Pink", "COLOR pink"), std::tuple(english, "pu", "PENUP")}) {
            QLocale::setDefault(locale);
            fixture->studio.setCode(QString::fromUtf8(program));
            fixture->studio.step();
            QCOMPARE(fixture->studio.currentCommand(), QString::fromUtf8(label));
        }
    }

    // An edit like any other, on a line of its own.
    void appendedExamplesGoOnTheirOwnLine()
    {
        Studio &studio = fixture->studio;
        const QString once = QStringLiteral("forward 50\nright 90\n");
        for (const auto &[code, after] : {std::pair(QString(), QStringLiteral("\nright 90\n")),
                                          std::pair(QStringLiteral("forward 50"), once),
                                          std::pair(QStringLiteral("forward 50\n"), once)}) {
            studio.setCode(code);
            studio.appendCode(QStringLiteral("right 90"));
            QCOMPARE(studio.code(), after);
            QCOMPARE(fixture->store.string(QStringLiteral("code0")), after);
        }
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
