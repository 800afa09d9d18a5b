// The welcome flow, the companion sheet and the profile sheet, used as a child uses them.
#include "UiHarness.h"

#include <QTest>

#include <memory>

#define UI(step) QVERIFY2((step), ui->why())

class OnboardingTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> ui;

    QString welcomePage() const { return ui->text(QStringLiteral("welcomePageNumber")); }

private slots:
    void init()
    {
        UiHarness::takeWarnings();
        ui = std::make_unique<UiHarness>();
    }

    void cleanup()
    {
        const QStringList warnings = UiHarness::finish(ui);
        QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(u'\n')));
    }

    void aFirstStartLeadsThroughTheWelcomeToTheFirstMission()
    {
        UI(ui->start());
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), true));
        QVERIFY(!ui->isShown(QStringLiteral("closeTourButton")));
        ui->key(Qt::Key_Escape);
        QTest::qWait(200);
        QVERIFY2(ui->isSheetOpen(QStringLiteral("welcomeSheet")), "a first-time child cannot wave the welcome away");

        QCOMPARE(welcomePage(), QStringLiteral("1 of 4"));
        UI(ui->click(QStringLiteral("welcomeForwardButton")));
        QCOMPARE(welcomePage(), QStringLiteral("2 of 4"));
        QVERIFY(!ui->isEnabled(QStringLiteral("welcomeForwardButton")));
        UI(ui->replaceText(QStringLiteral("playerField"), QStringLiteral("   ")));
        QVERIFY(!ui->isShown(QStringLiteral("greeting")));
        UI(ui->type(QStringLiteral("\n")));
        QCOMPARE(welcomePage(), QStringLiteral("2 of 4")); // Return does nothing without a name
        UI(ui->replaceText(QStringLiteral("playerField"), QStringLiteral("Noor Al-Hakim the Magnificent")));
        QCOMPARE(ui->property(QStringLiteral("playerField"), "text").toString(), QStringLiteral("Noor Al-Hakim the Magnif"));
        UI(ui->replaceText(QStringLiteral("playerField"), QStringLiteral("  Noor ")));
        QCOMPARE(ui->text(QStringLiteral("greeting")), QStringLiteral("Hello, Noor! Your adventure is waiting."));
        UI(ui->type(QStringLiteral("\n")));
        QCOMPARE(welcomePage(), QStringLiteral("3 of 4"));

        UI(ui->click(QStringLiteral("pickerCard_1")));
        QCOMPARE(ui->property(QStringLiteral("nicknameField"), "text").toString(), QStringLiteral("Peaches"));
        QVERIFY(!ui->isEnabled(QStringLiteral("pickerCard_3")));
        UI(ui->replaceText(QStringLiteral("nicknameField"), QString()));
        QVERIFY(!ui->isEnabled(QStringLiteral("welcomeForwardButton")));
        UI(ui->replaceText(QStringLiteral("nicknameField"), QStringLiteral("Pip")));
        QCOMPARE(ui->text(QStringLiteral("nicknameCounter")), QStringLiteral("3/24"));
        UI(ui->click(QStringLiteral("welcomeForwardButton")));
        QCOMPARE(welcomePage(), QStringLiteral("4 of 4"));

        const QString codeBefore = ui->studio().code();
        // Tried commands and the strokes the practice canvas shows after each press.
        const QList<std::pair<int, int>> presses{{1, 1}, {2, 1}, {3, 2}, {0, 0}};
        for (const auto &[tried, strokes] : presses) {
            UI(ui->click(QStringLiteral("tryStepButton")));
            QCOMPARE(ui->property(QStringLiteral("welcomeView"), "demoStep").toInt(), tried);
            QCOMPARE(ui->property(QStringLiteral("practiceCanvas"), "strokes").value<QList<Stroke>>().size(), strokes);
        }
        QCOMPARE(ui->studio().code(), codeBefore); // the practice leaves the studio alone
        QVERIFY(ui->studio().strokes().isEmpty());

        QCOMPARE(ui->text(QStringLiteral("welcomeForwardButton")), QStringLiteral("Let’s explore!"));
        UI(ui->click(QStringLiteral("welcomeForwardButton")));
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), false));
        QCOMPARE(ui->studio().mission(), 0);
        QCOMPARE(ui->studio().playerName(), QStringLiteral("Noor"));
        QCOMPARE(ui->studio().turtleName(), QStringLiteral("Pip"));
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("Noor and Pip. Let’s make something!"));
    }

    void aReplayKeepsTheMissionAndCanBeClosed()
    {
        ui->seedReturningPlayer(QStringLiteral("Ada"));
        ui->seedCompleted({0, 1, 2});
        UI(ui->start());
        ui->studio().select(2);
        UI(ui->click(QStringLiteral("welcomeGuideButton")));
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), true));
        QCOMPARE(welcomePage(), QStringLiteral("1 of 4"));
        QVERIFY(ui->isShown(QStringLiteral("closeTourButton")));
        for (int page = 0; page < 3; ++page)
            UI(ui->click(QStringLiteral("welcomeForwardButton")));
        QCOMPARE(ui->text(QStringLiteral("welcomeForwardButton")), QStringLiteral("Back to my studio"));
        UI(ui->click(QStringLiteral("closeTourButton")));
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), false));
        QCOMPARE(ui->studio().mission(), 2);

        UI(ui->click(QStringLiteral("welcomeGuideButton")));
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), true));
        QCOMPARE(welcomePage(), QStringLiteral("1 of 4")); // every opening starts over
        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), false));
        QCOMPARE(ui->studio().mission(), 2);
    }

    void theRoyalCardNeedsThreeBadges_data()
    {
        QTest::addColumn<int>("badges");
        QTest::addColumn<bool>("choosable");
        QTest::newRow("two badges") << 2 << false;
        QTest::newRow("three badges") << 3 << true;
    }

    void theRoyalCardNeedsThreeBadges()
    {
        QFETCH(int, badges);
        QFETCH(bool, choosable);
        QList<qint64> done;
        for (int i = 0; i < badges; ++i)
            done.append(i);
        ui->seedReturningPlayer();
        ui->seedCompleted(done);
        UI(ui->start());
        UI(ui->click(QStringLiteral("companionEditButton")));
        UI(ui->waitForSheet(QStringLiteral("companionSettingsSheet"), true));
        QCOMPARE(ui->isEnabled(QStringLiteral("pickerCard_3")), choosable);
        QCOMPARE(ui->text(QStringLiteral("pickerStatus_3")), choosable ? QStringLiteral("Choose me") : QStringLiteral("3 badges"));
        UI(ui->click(QStringLiteral("pickerCard_3"), UiHarness::Require::Anything));
        UI(ui->click(QStringLiteral("saveCompanionButton")));
        UI(ui->waitForSheet(QStringLiteral("companionSettingsSheet"), false));
        QCOMPARE(ui->studio().turtle(), choosable ? 3 : 0);
        QCOMPARE(ui->studio().message(),
                 (choosable ? QStringLiteral("Your Majesty") : QStringLiteral("Clover")) + QStringLiteral(" is ready for your next idea."));
    }

    void cancellingTheCompanionSheetChangesNothing()
    {
        ui->seedReturningPlayer();
        UI(ui->start());
        QVERIFY(ui->studio().saveCompanion(1, QStringLiteral("Sunny")));
        UI(ui->click(QStringLiteral("companionEditButton")));
        UI(ui->waitForSheet(QStringLiteral("companionSettingsSheet"), true));
        QCOMPARE(ui->text(QStringLiteral("pickerStatus_1")), QStringLiteral("Your sidekick"));
        QCOMPARE(ui->property(QStringLiteral("nicknameField"), "text").toString(), QStringLiteral("Sunny"));
        UI(ui->click(QStringLiteral("pickerCard_2")));
        UI(ui->replaceText(QStringLiteral("nicknameField"), QStringLiteral("Comet")));
        UI(ui->click(QStringLiteral("cancelCompanionButton")));
        UI(ui->waitForSheet(QStringLiteral("companionSettingsSheet"), false));
        QCOMPARE(ui->studio().turtle(), 1);
        QCOMPARE(ui->studio().turtleName(), QStringLiteral("Sunny"));
        QCOMPARE(ui->store().stringDictionary(QStringLiteral("turtleNames")),
                 (QMap<QString, QString>{{QStringLiteral("1"), QStringLiteral("Sunny")}}));

        UI(ui->click(QStringLiteral("companionEditButton")));
        UI(ui->waitForSheet(QStringLiteral("companionSettingsSheet"), true));
        QCOMPARE(ui->property(QStringLiteral("nicknameField"), "text").toString(), QStringLiteral("Sunny"));
    }

    void keepingTheGameChangesNothing()
    {
        ui->seedReturningPlayer(QStringLiteral("Ada"));
        ui->seedCompleted({0, 1});
        UI(ui->start());
        UI(ui->click(QStringLiteral("profileButton")));
        UI(ui->waitForSheet(QStringLiteral("playerSettingsSheet"), true));
        QCOMPARE(ui->property(QStringLiteral("playerNameField"), "text").toString(), QStringLiteral("Ada"));
        UI(ui->click(QStringLiteral("startOverButton")));
        UI(ui->waitFor([&] { return ui->isShown(QStringLiteral("keepGameButton")); }, QStringLiteral("the erase alert")));
        UI(ui->click(QStringLiteral("keepGameButton")));
        UI(ui->waitFor([&] { return !ui->isShown(QStringLiteral("keepGameButton")); }, QStringLiteral("the alert closing")));
        QVERIFY(ui->isSheetOpen(QStringLiteral("playerSettingsSheet")));
        QCOMPARE(ui->studio().badges(), 2);
        QVERIFY(!ui->studio().resetAfterProfileDismissal());

        UI(ui->replaceText(QStringLiteral("playerNameField"), QStringLiteral("  Ada Lovelace the Countess of ")));
        UI(ui->click(QStringLiteral("saveNameButton")));
        UI(ui->waitForSheet(QStringLiteral("playerSettingsSheet"), false));
        QCOMPARE(ui->studio().playerName(), QStringLiteral("Ada Lovelace the Count")); // cut to 24 while typing, then trimmed
        QCOMPARE(ui->studio().badges(), 2);
    }

    void erasingWaitsForTheSheetToClose()
    {
        ui->seedReturningPlayer(QStringLiteral("Ada"));
        ui->seedCompleted({0, 1});
        UI(ui->start());
        UI(ui->click(QStringLiteral("profileButton")));
        UI(ui->waitForSheet(QStringLiteral("playerSettingsSheet"), true));
        UI(ui->click(QStringLiteral("startOverButton")));
        UI(ui->waitFor([&] { return ui->isShown(QStringLiteral("eraseGameButton")); }, QStringLiteral("the erase alert")));

        // The erase must find the profile sheet already closed.
        int erases = 0;
        bool sheetOpenDuringErase = false;
        QObject::connect(&ui->studio(), &Studio::completedChanged, &ui->studio(), [&] {
            ++erases;
            sheetOpenDuringErase = sheetOpenDuringErase || ui->isSheetOpen(QStringLiteral("playerSettingsSheet"));
        });
        UI(ui->click(QStringLiteral("eraseGameButton")));
        UI(ui->waitForSheet(QStringLiteral("playerSettingsSheet"), false));
        UI(ui->waitFor([&] { return ui->studio().badges() == 0; }, QStringLiteral("the erase")));
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), true));
        QCOMPARE(erases, 1);
        QVERIFY(!sheetOpenDuringErase);
        QCOMPARE(ui->studio().playerName(), QString());
        QCOMPARE(ui->studio().message(), QStringLiteral("Ready for a brand-new adventure."));
        QVERIFY(!ui->isShown(QStringLiteral("closeTourButton")));
        QVERIFY(!ui->store().keys().contains(QStringLiteral("completed")));
    }
};

QTEST_MAIN(OnboardingTest)
#include "tst_onboarding.moc"
