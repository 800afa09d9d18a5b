#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
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
        fixture->store.remove(QStringLiteral("completed"));
        solve(studio, 0);
        QCOMPARE(studio.badges(), 1);
        QVERIFY(!studio.freshReward());
        QVERIFY(studio.celebration());
        QCOMPARE(studio.message(), QStringLiteral("Beautiful! You nailed this mission again."));
        QCOMPARE(storedCompleted(fixture->store), QList<qint64>{0}); // written again on a repeat
        QCOMPARE(celebration.count(), 3);
    }

    void aFailedCheckOnlySpeaksAndKeepsTheDrawing()
    {
        Studio &studio = fixture->studio;
        solve(studio, 0);
        solve(studio, 1);
        studio.setCelebration(false);
        studio.select(2);
        studio.setCode(QStringLiteral("fd 30 rt 45 fd 30"));
        stepToEnd(studio);
        QCOMPARE(studio.message(), QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint."));
        QCOMPARE(studio.strokes().size(), 2);
        QCOMPARE(studio.completed(), (QSet<int>{0, 1}));
        QVERIFY(studio.freshReward());
        QVERIFY(!studio.celebration());
        QCOMPARE(studio.drawingSource(), studio.code());
    }

    void freePlayIsNeverJudged()
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
    }

    void codeIsKeptPerMissionAndForFreePlay()
    {
        Studio &studio = fixture->studio;
        for (int i = 0; i < 4; ++i)
            solve(studio, i);
        studio.select(4);
        QCOMPARE(studio.code(), missions().at(4).starter);
        QVERIFY(!fixture->store.string(QStringLiteral("code4")));
        studio.setCode(QStringLiteral("fd 12"));
        studio.enterFree();
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

    void selectRefusesLockedAndMissingMissions_data()
    {
        QTest::addColumn<int>("mission");
        QTest::newRow("locked") << 2;
        QTest::newRow("past the end") << 30;
        QTest::newRow("negative") << -1;
    }

    void selectRefusesLockedAndMissingMissions()
    {
        QFETCH(int, mission);
        Studio &studio = fixture->studio;
        solve(studio, 0);
        studio.select(1);
        studio.setCode(QStringLiteral("repeat 50 [fd 1]"));
        studio.run();
        const QString message = studio.message();
        studio.select(mission);
        QVERIFY(studio.running()); // not even the animation is stopped
        QCOMPARE(studio.mission(), 1);
        QCOMPARE(studio.message(), message);
        QCOMPARE(studio.code(), QStringLiteral("repeat 50 [fd 1]"));
        studio.stop();
    }

    void selectStopsARunAndStartsAFreshCanvas()
    {
        Studio &studio = fixture->studio;
        QSignalSpy finished(&studio, &Studio::drawingFinished);
        solve(studio, 0);
        studio.requestHint();
        studio.setShowTarget(true);
        studio.setCode(QStringLiteral("repeat 50 [fd 1]"));
        studio.run();
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

    void hintsStopAtTheLastOne()
    {
        Studio &studio = fixture->studio;
        QSignalSpy changed(&studio, &Studio::hintChanged);
        for (int i = 0; i < 3; ++i)
            studio.requestHint();
        QCOMPARE(studio.hint(), 2);
        QCOMPARE(changed.count(), 2);
    }

    void rewardsFollowTheBadgeCount()
    {
        Studio &studio = fixture->studio;
        QList<int> announcedThemes;
        QList<bool> royal;
        QStringList ranks;
        for (int i = 0; i < missions().size(); ++i) {
            solve(studio, i);
            QVERIFY2(studio.celebration(), qPrintable(QStringLiteral("mission %1").arg(i)));
            studio.setCelebration(false);
            announcedThemes.append(studio.announcedTheme());
            royal.append(studio.announcesRoyalCompanion());
            ranks.append(studio.rank());
            QCOMPARE(studio.isTurtleUnlocked(Studio::royalCompanion), i >= 2);
            for (int theme = 0; theme < themes().size(); ++theme)
                QCOMPARE(studio.isThemeAvailable(theme), i + 1 >= themes().at(theme).unlock);
        }
        for (int i = 0; i < announcedThemes.size(); ++i) {
            const int badges = i + 1;
            QCOMPARE(announcedThemes.at(i), badges % 6 == 0 ? badges / 6 : -1);
            QCOMPARE(royal.at(i), badges == 3);
        }
        QCOMPARE(ranks.at(4), QStringLiteral("Curious Coder"));
        QCOMPARE(ranks.at(5), QStringLiteral("Shape Explorer"));
        QCOMPARE(ranks.at(28), QStringLiteral("Recipe Maker"));
        QCOMPARE(ranks.at(29), QStringLiteral("Marble Cove Master"));
        QCOMPARE(studio.experience(), 3000);

        solve(studio, 5); // a repeat announces nothing
        QCOMPARE(studio.announcedTheme(), -1);
        QVERIFY(!studio.announcesRoyalCompanion());
    }
};

QTEST_GUILESS_MAIN(ProgressTest)
#include "tst_progress.moc"
