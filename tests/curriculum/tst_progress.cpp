#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "support/StudioFixture.h"

#include <QSignalSpy>
#include <QTest>

namespace {

// Opens the mission, types its own solution and steps it to the end.
void solve(Studio &studio, int mission)
{
    studio.select(mission);
    QCOMPARE(studio.mission(), mission);
    studio.setCode(missions().at(mission).solution);
    stepToEnd(studio);
}

QList<qint64> storedCompleted(const PreferencesStore &store)
{
    return store.integerArray(QStringLiteral("completed")).value_or(QList<qint64>{-1});
}

} // namespace

class ProgressTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<StudioFixture> fixture;

private slots:
    void init() { fixture = std::make_unique<StudioFixture>(); }

    // A first success earns a badge; a failed check then only speaks and keeps the drawing; a repeat
    // earns nothing new.
    void aFirstSuccessEarnsABadgeAndARepeatDoesNot()
    {
        Studio &studio = fixture->studio;
        QSignalSpy celebration(&studio, &Studio::celebrationChanged);
        solve(studio, 0);
        QCOMPARE(studio.completed(), QSet<int>{0});
        QVERIFY(studio.freshReward());
        QVERIFY(studio.celebration());
        QCOMPARE(studio.message(), QStringLiteral("You did it! A new badge for your collection."));
        QCOMPARE(studio.experience(), 100);
        QCOMPARE(storedCompleted(fixture->store), QList<qint64>{0});
        QCOMPARE(studio.drawingSource(), studio.code());

        studio.setCelebration(false);
        studio.select(1);
        studio.setCode(QStringLiteral("fd 30 rt 45 fd 30"));
        stepToEnd(studio);
        QCOMPARE(studio.message(), QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint."));
        QCOMPARE(studio.strokes().size(), 2);
        QCOMPARE(studio.completed(), QSet<int>{0});
        QVERIFY(studio.freshReward());
        QVERIFY(!studio.celebration());
        QCOMPARE(studio.drawingSource(), studio.code());

        fixture->store.remove(QStringLiteral("completed"));
        solve(studio, 0);
        QCOMPARE(studio.badges(), 1);
        QVERIFY(!studio.freshReward());
        QVERIFY(studio.celebration());
        QCOMPARE(studio.message(), QStringLiteral("Beautiful! You nailed this mission again."));
        QCOMPARE(storedCompleted(fixture->store), QList<qint64>{0}); // written again on a repeat
        QCOMPARE(celebration.count(), 3);
    }

    // Free play is never judged; its code is kept apart from each mission's.
    void freePlayAndCodeKeptPerMission()
    {
        Studio &studio = fixture->studio;
        studio.enterFree();
        QVERIFY(studio.free());
        QCOMPARE(studio.code(), QStringLiteral("; Dream it. Draw it.\n"));
        QCOMPARE(studio.message(), QStringLiteral("Your imagination station is ready."));
        studio.setCode(missions().at(0).solution); // would pass mission 0
        stepToEnd(studio);
        QCOMPARE(studio.message(), QStringLiteral("Made by you. Save it to your gallery!"));
        QVERIFY(studio.completed().isEmpty());
        QVERIFY(!studio.celebration());
        QVERIFY(studio.savePlayerName(QStringLiteral("Noor")));
        stepToEnd(studio);
        QCOMPARE(studio.message(), QStringLiteral("Made by Noor. Save it to your gallery!"));

        for (int i = 0; i < 4; ++i)
            solve(studio, i);
        studio.select(4);
        QCOMPARE(studio.code(), missions().at(4).starter);
        QVERIFY(!fixture->store.string(QStringLiteral("code4")));
        studio.setCode(QStringLiteral("fd 12"));
        studio.enterFree();
        QCOMPARE(studio.code(), missions().at(0).solution);
        studio.setCode(QStringLiteral("rt 5"));
        studio.select(4);
        QCOMPARE(studio.code(), QStringLiteral("fd 12"));
        QCOMPARE(studio.message(), QStringLiteral("Let's try ") + missions().at(4).title.toLower() + u'.');
        studio.enterFree();
        QCOMPARE(studio.code(), QStringLiteral("rt 5"));
        QCOMPARE(studio.mission(), 4); // free play keeps the mission
        QCOMPARE(fixture->store.string(QStringLiteral("freeCode")), QStringLiteral("rt 5"));
        QCOMPARE(fixture->store.string(QStringLiteral("code4")), QStringLiteral("fd 12"));
    }

    // Choosing a locked or missing mission changes nothing, not even a run; choosing an open one stops
    // the run and starts a fresh canvas with no hint shown.
    void selectStopsARunOrRefuses()
    {
        Studio &studio = fixture->studio;
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        solve(studio, 0);
        QSignalSpy hints(&studio, &Studio::hintChanged);
        for (int i = 0; i < 3; ++i)
            studio.requestHint();
        QCOMPARE(studio.hint(), 2); // the last one
        QCOMPARE(hints.count(), 2);
        studio.setShowTarget(true);
        studio.setCode(QStringLiteral("repeat 50 [fd 1]"));
        studio.run();
        const QString message = studio.message();
        for (const int mission : {2, 30, -1}) {
            studio.select(mission);
            QVERIFY(studio.running());
            QCOMPARE(std::pair(mission, studio.mission()), std::pair(mission, 0));
            QCOMPARE(studio.message(), message);
            QCOMPARE(studio.code(), QStringLiteral("repeat 50 [fd 1]"));
        }
        studio.select(1);
        QVERIFY(!studio.running());
        QVERIFY(studio.strokes().isEmpty());
        QCOMPARE(studio.hint(), 0);
        QVERIFY(studio.showTarget());
        QVERIFY(studio.celebration()); // the celebration closes only by its own buttons
        QCOMPARE(studio.targetStrokes(), studio.simulate(missions().at(1).solution));
        QTest::qWait(150);
        QCOMPARE(finished.count(), 1); // the cancelled run never finished
    }

    // What a badge announces; ranks and canvases by count are the curriculum's.
    void rewardsFollowTheBadgeCount()
    {
        Studio &studio = fixture->studio;
        for (int badges = 1; badges <= missions().size(); ++badges) {
            solve(studio, badges - 1);
            QVERIFY2(studio.celebration(), qPrintable(QStringLiteral("badge %1").arg(badges)));
            studio.setCelebration(false);
            QCOMPARE(std::pair(badges, studio.announcedTheme()), std::pair(badges, badges % 6 == 0 ? badges / 6 : -1));
            QCOMPARE(std::pair(badges, studio.announcesRoyalCompanion()), std::pair(badges, badges == 3));
            QCOMPARE(std::pair(badges, studio.isTurtleUnlocked(Studio::royalCompanion)), std::pair(badges, badges >= 3));
        }
        solve(studio, 5); // a repeat announces nothing
        QCOMPARE(studio.announcedTheme(), -1);
        QVERIFY(!studio.announcesRoyalCompanion());
    }
};

QTEST_GUILESS_MAIN(ProgressTest)
#include "tst_progress.moc"
