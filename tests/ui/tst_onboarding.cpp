// The welcome flow, the companion sheet and the profile sheet, used as a child uses them.
#include "UiHarness.h"

using namespace Qt::StringLiterals;

class OnboardingTest : public UiTest
{
    Q_OBJECT

    QString welcomePage() const { return ui->text(u"welcomePageNumber"_s); }

private slots:
    void aFirstStartLeadsThroughTheWelcomeToTheFirstMission()
    {
        UI(ui->start());
        UI(ui->waitForSheet(u"welcomeSheet"_s, true));
        QVERIFY(!ui->isShown(u"closeTourButton"_s));
        ui->key(Qt::Key_Escape);
        UI(ui->click(u"experience"_s, UiHarness::Require::Anything)); // outside the sheet
        QTest::qWait(200);
        QVERIFY2(ui->isSheetOpen(u"welcomeSheet"_s), "a first-time child cannot wave the welcome away");

        QCOMPARE(welcomePage(), u"1 of 4"_s);
        UI(ui->click(u"welcomeForwardButton"_s));
        QCOMPARE(welcomePage(), u"2 of 4"_s);
        QVERIFY(!ui->isEnabled(u"welcomeForwardButton"_s));
        UI(ui->replaceText(u"playerField"_s, u"   "_s));
        QVERIFY(!ui->isShown(u"greeting"_s));
        UI(ui->type(u"\n"_s));
        QCOMPARE(welcomePage(), u"2 of 4"_s); // Return does nothing without a name
        UI(ui->replaceText(u"playerField"_s, u"Noor Al-Hakim the Magnificent"_s));
        QCOMPARE(ui->property(u"playerField"_s, "text").toString(), u"Noor Al-Hakim the Magnif"_s);
        UI(ui->replaceText(u"playerField"_s, u"  Noor "_s));
        QCOMPARE(ui->text(u"greeting"_s), u"Hello, Noor! Your adventure is waiting."_s);
        UI(ui->type(u"\n"_s));
        QCOMPARE(welcomePage(), u"3 of 4"_s);

        UI(ui->click(u"pickerCard_1"_s));
        QCOMPARE(ui->property(u"nicknameField"_s, "text").toString(), u"Peaches"_s);
        QVERIFY(!ui->isEnabled(u"pickerCard_3"_s));
        UI(ui->replaceText(u"nicknameField"_s, QString()));
        QVERIFY(!ui->isEnabled(u"welcomeForwardButton"_s));
        UI(ui->replaceText(u"nicknameField"_s, u"Pip"_s));
        QCOMPARE(ui->text(u"nicknameCounter"_s), u"3/24"_s);
        UI(ui->click(u"welcomeForwardButton"_s));
        QCOMPARE(welcomePage(), u"4 of 4"_s);

        const QString codeBefore = ui->studio().code();
        // Tried commands and the strokes the practice canvas shows after each press.
        const QList<std::pair<int, int>> presses{{1, 1}, {2, 1}, {3, 2}, {0, 0}};
        for (const auto &[tried, strokes] : presses) {
            UI(ui->click(u"tryStepButton"_s));
            QCOMPARE(ui->property(u"welcomeView"_s, "demoStep").toInt(), tried);
            QCOMPARE(ui->property(u"practiceCanvas"_s, "strokes").value<QList<Stroke>>().size(), strokes);
        }
        QCOMPARE(ui->studio().code(), codeBefore); // the practice leaves the studio alone
        QVERIFY(ui->studio().strokes().isEmpty());

        QCOMPARE(ui->text(u"welcomeForwardButton"_s), u"Let’s explore!"_s);
        UI(ui->clickForSheet(u"welcomeForwardButton"_s, u"welcomeSheet"_s, false));
        QCOMPARE(ui->studio().mission(), 0);
        QCOMPARE(ui->studio().playerName(), u"Noor"_s);
        QCOMPARE(ui->studio().turtleName(), u"Pip"_s);
        QCOMPARE(ui->text(u"statusLine"_s), u"Noor and Pip. Let’s make something!"_s);
    }

    void aReplayKeepsTheMissionAndCanBeClosed()
    {
        UI(startReturning({0, 1, 2}));
        ui->studio().select(2);
        UI(ui->clickForSheet(u"welcomeGuideButton"_s, u"welcomeSheet"_s));
        QCOMPARE(welcomePage(), u"1 of 4"_s);
        QVERIFY(ui->isShown(u"closeTourButton"_s));
        for (int page = 0; page < 3; ++page)
            UI(ui->click(u"welcomeForwardButton"_s));
        QCOMPARE(ui->text(u"welcomeForwardButton"_s), u"Back to my studio"_s);
        UI(ui->clickForSheet(u"closeTourButton"_s, u"welcomeSheet"_s, false));
        QCOMPARE(ui->studio().mission(), 2);

        UI(ui->clickForSheet(u"welcomeGuideButton"_s, u"welcomeSheet"_s));
        QCOMPARE(welcomePage(), u"1 of 4"_s); // every opening starts over
        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(u"welcomeSheet"_s, false));
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
        UI(startReturning(range(0, badges)));
        UI(ui->clickForSheet(u"companionEditButton"_s, u"companionSettingsSheet"_s));
        QCOMPARE(ui->isEnabled(u"pickerCard_3"_s), choosable);
        QCOMPARE(ui->text(u"pickerStatus_3"_s), choosable ? u"Choose me"_s : u"3 badges"_s);
        UI(ui->click(u"pickerCard_3"_s, UiHarness::Require::Anything));
        UI(ui->clickForSheet(u"saveCompanionButton"_s, u"companionSettingsSheet"_s, false));
        QCOMPARE(ui->studio().turtle(), choosable ? 3 : 0);
        QCOMPARE(ui->studio().message(),
                 (choosable ? u"Your Majesty"_s : u"Clover"_s) + u" is ready for your next idea."_s);
    }

    void cancellingTheCompanionSheetChangesNothing()
    {
        UI(startReturning());
        QVERIFY(ui->studio().saveCompanion(1, u"Sunny"_s));
        UI(ui->clickForSheet(u"companionEditButton"_s, u"companionSettingsSheet"_s));
        QCOMPARE(ui->text(u"pickerStatus_1"_s), u"Your sidekick"_s);
        QCOMPARE(ui->property(u"nicknameField"_s, "text").toString(), u"Sunny"_s);
        UI(ui->click(u"pickerCard_2"_s));
        UI(ui->replaceText(u"nicknameField"_s, u"Comet"_s));
        UI(ui->clickForSheet(u"cancelCompanionButton"_s, u"companionSettingsSheet"_s, false));
        QCOMPARE(ui->studio().turtle(), 1);
        QCOMPARE(ui->studio().turtleName(), u"Sunny"_s);
        QCOMPARE(ui->store().stringDictionary(u"turtleNames"_s),
                 (QMap<QString, QString>{{u"1"_s, u"Sunny"_s}}));

        UI(ui->clickForSheet(u"companionEditButton"_s, u"companionSettingsSheet"_s));
        QCOMPARE(ui->property(u"nicknameField"_s, "text").toString(), u"Sunny"_s);
    }

    void keepingTheGameChangesNothing()
    {
        ui->store().setString(u"code0"_s, u"forward 7"_s);
        UI(startReturning({0, 1}));
        // A click outside closes the sheet and erases nothing.
        UI(ui->clickForSheet(u"profileButton"_s, u"playerSettingsSheet"_s));
        UI(ui->click(u"experience"_s, UiHarness::Require::Anything));
        UI(ui->waitForSheet(u"playerSettingsSheet"_s, false));
        QTest::qWait(50);
        QCOMPARE(ui->store().string(u"code0"_s), u"forward 7"_s);
        QVERIFY(!ui->studio().welcome());

        UI(ui->clickForSheet(u"profileButton"_s, u"playerSettingsSheet"_s));
        QCOMPARE(ui->property(u"playerNameField"_s, "text").toString(), u"Ada"_s);
        UI(ui->click(u"startOverButton"_s));
        UI(ui->waitFor([&] { return ui->isShown(u"keepGameButton"_s); }, u"the erase alert"_s));
        UI(ui->click(u"keepGameButton"_s));
        UI(ui->waitFor([&] { return !ui->isShown(u"keepGameButton"_s); }, u"the alert closing"_s));
        QVERIFY(ui->isSheetOpen(u"playerSettingsSheet"_s));
        QCOMPARE(ui->studio().badges(), 2);
        QVERIFY(!ui->studio().resetAfterProfileDismissal());

        UI(ui->replaceText(u"playerNameField"_s, u"  Ada Lovelace the Countess of "_s));
        UI(ui->clickForSheet(u"saveNameButton"_s, u"playerSettingsSheet"_s, false));
        QCOMPARE(ui->studio().playerName(), u"Ada Lovelace the Count"_s); // cut to 24 while typing, then trimmed
        QCOMPARE(ui->studio().badges(), 2);
    }

    void erasingWaitsForTheSheetToClose()
    {
        UI(startReturning({0, 1}));
        UI(ui->clickForSheet(u"profileButton"_s, u"playerSettingsSheet"_s));
        UI(ui->click(u"startOverButton"_s));
        UI(ui->waitFor([&] { return ui->isShown(u"eraseGameButton"_s); }, u"the erase alert"_s));

        // The erase must find the profile sheet already closed.
        int erases = 0;
        bool sheetOpenDuringErase = false;
        QObject::connect(&ui->studio(), &Studio::completedChanged, &ui->studio(), [&] {
            ++erases;
            sheetOpenDuringErase = sheetOpenDuringErase || ui->isSheetOpen(u"playerSettingsSheet"_s);
        });
        UI(ui->clickForSheet(u"eraseGameButton"_s, u"playerSettingsSheet"_s, false));
        UI(ui->waitFor([&] { return ui->studio().badges() == 0; }, u"the erase"_s));
        UI(ui->waitForSheet(u"welcomeSheet"_s, true));
        QCOMPARE(erases, 1);
        QVERIFY(!sheetOpenDuringErase);
        QCOMPARE(ui->studio().playerName(), QString());
        QCOMPARE(ui->studio().message(), u"Ready for a brand-new adventure."_s);
        QVERIFY(!ui->isShown(u"closeTourButton"_s));
        QVERIFY(!ui->store().keys().contains(u"completed"_s));
    }
};

QTEST_MAIN(OnboardingTest)
#include "tst_onboarding.moc"
