// The whole game played through the screens, as a child would: the welcome, all thirty
// missions typed into the editor and run, a creation saved and a picture exported, a restart
// that gives everything back, and finally starting over.
#include "UiHarness.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class JourneyTest : public UiTest
{
    Q_OBJECT

    bool typeAndRun(const QString &code)
    {
        return ui->replaceText(u"codeEditor"_s, code) && ui->studio().code() == code && runToEnd(60000);
    }

private slots:
    void thePlayersWholeJourney()
    {
        QElapsedTimer clock;
        clock.start();

        // The first start: the welcome flow, with a name and a companion.
        UI(ui->start());
        UI(ui->waitForSheet(u"welcomeSheet"_s, true));
        UI(ui->click(u"welcomeForwardButton"_s));
        UI(ui->replaceText(u"playerField"_s, u"Ada"_s));
        UI(ui->click(u"welcomeForwardButton"_s));
        UI(ui->click(u"pickerCard_2"_s));
        UI(ui->click(u"welcomeForwardButton"_s));
        UI(ui->clickForSheet(u"welcomeForwardButton"_s, u"welcomeSheet"_s, false));
        QCOMPARE(ui->text(u"statusLine"_s), u"Ada and Orbit. Let’s make something!"_s);
        UI(ui->chooseSpeed(true));

        // Every mission, by its own solution, following the celebration onwards.
        for (int mission = 0; mission < missions().size(); ++mission) {
            const QByteArray where = "mission " + QByteArray::number(mission);
            QCOMPARE(ui->studio().mission(), mission);
            QVERIFY2(!ui->studio().free(), where);
            UI(typeAndRun(missions().at(mission).solution));
            UI(ui->waitForSheet(u"celebrationSheet"_s, true));
            const int badges = mission + 1;
            QCOMPARE(ui->text(u"celebrationHeadline"_s), u"Look what you made!"_s);
            QVERIFY2(ui->isShown(u"royalLine"_s) == (badges == 3), where);
            const bool newCanvas = badges % 6 == 0;
            QVERIFY2(ui->isShown(u"canvasLine"_s) == newCanvas, where);
            if (newCanvas)
                QCOMPARE(ui->text(u"canvasLine"_s), u"New canvas unlocked: "_s + themes().at(badges / 6).name + u'!');
            QCOMPARE(ui->text(u"nextAdventureButton"_s), badges == 30 ? u"Explore free play"_s : u"Next adventure"_s);
            UI(ui->clickForSheet(u"nextAdventureButton"_s, u"celebrationSheet"_s, false));
        }
        QVERIFY(ui->studio().free());
        QCOMPARE(ui->text(u"rank"_s), u"Marble Cove Master"_s);

        // A creation kept in the gallery, and a picture exported.
        UI(typeAndRun(u"color pink\nrepeat 36 [\n  forward 120\n  right 170\n]\n"_s));
        UI(ui->clickForSheet(u"saveCreationButton"_s, u"savingSheet"_s));
        QCOMPARE(ui->property(u"titleField"_s, "text").toString(), u"My masterpiece"_s);
        UI(ui->replaceText(u"titleField"_s, u"Pink star"_s));
        UI(ui->clickForSheet(u"saveToGalleryButton"_s, u"savingSheet"_s, false));
        QCOMPARE(ui->text(u"statusLine"_s), u"‘Pink star’ is safe in your gallery."_s);

        QObject *dialog = ui->find(u"exportDialog"_s);
        QVERIFY(dialog);
        UI(ui->click(u"exportButton"_s));
        UI(ui->waitFor([&] { return dialog->property("visible").toBool(); }, u"the save dialog"_s));
        const QString picture = dialog->property("selectedFile").toUrl().toLocalFile();
        QMetaObject::invokeMethod(dialog, "accept");
        UI(ui->waitFor([&] { return ui->text(u"statusLine"_s) == u"Your picture is exported!"_s; }, u"the exported picture"_s));
        QVERIFY(QFile::exists(picture));
        QCOMPARE(QImage(picture).size(), QSize(1200, 1000));

        // A restart gives everything back.
        ui->shutDown();
        UI(ui->start());
        QVERIFY(!ui->isSheetOpen(u"welcomeSheet"_s));
        QCOMPARE(ui->studio().badges(), 30);
        QCOMPARE(ui->text(u"rank"_s), u"Marble Cove Master"_s);
        QCOMPARE(ui->text(u"experience"_s), u"✦ 3000 XP"_s);
        QCOMPARE(ui->text(u"progressText"_s), u"30 / 30 missions explored"_s);
        QCOMPARE(ui->studio().turtleName(), u"Orbit"_s);
        QCOMPARE(ui->studio().creations().size(), 1);
        QCOMPARE(ui->studio().creations().first().title, u"Pink star"_s);
        UI(ui->clickForSheet(u"galleryButton"_s, u"gallerySheet"_s));
        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(u"gallerySheet"_s, false));

        // Starting over.
        UI(ui->clickForSheet(u"profileButton"_s, u"playerSettingsSheet"_s));
        UI(ui->click(u"startOverButton"_s));
        UI(ui->waitFor([&] { return ui->isShown(u"eraseGameButton"_s); }, u"the erase alert"_s));
        UI(ui->clickForSheet(u"eraseGameButton"_s, u"welcomeSheet"_s));
        QCOMPARE(ui->studio().badges(), 0);
        QVERIFY(ui->studio().creations().isEmpty());
        QVERIFY(ui->store().keys().isEmpty());
        QVERIFY(QFile::exists(picture)); // exported pictures stay where they are

        qInfo("the whole journey took %.1f s", double(clock.elapsed()) / 1000.0);
    }
};

QTEST_MAIN(JourneyTest)
#include "tst_journey.moc"
