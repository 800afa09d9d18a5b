// The whole game played through the screens, as a child would: the welcome, all thirty
// missions typed into the editor and run, a creation saved and a picture exported, a restart
// that gives everything back, and finally starting over.
#include "UiHarness.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

class JourneyTest : public UiTest
{
    Q_OBJECT

    bool typeAndRun(const QString &code)
    {
        return ui->replaceText(QStringLiteral("codeEditor"), code) && ui->studio().code() == code && runToEnd(60000);
    }

private slots:
    void thePlayersWholeJourney()
    {
        QElapsedTimer clock;
        clock.start();

        // The first start: the welcome flow, with a name and a companion.
        UI(ui->start());
        UI(ui->waitForSheet(QStringLiteral("welcomeSheet"), true));
        UI(ui->click(QStringLiteral("welcomeForwardButton")));
        UI(ui->replaceText(QStringLiteral("playerField"), QStringLiteral("Ada")));
        UI(ui->click(QStringLiteral("welcomeForwardButton")));
        UI(ui->click(QStringLiteral("pickerCard_2")));
        UI(ui->click(QStringLiteral("welcomeForwardButton")));
        UI(ui->clickForSheet(QStringLiteral("welcomeForwardButton"), QStringLiteral("welcomeSheet"), false));
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("Ada and Orbit. Let’s make something!"));
        UI(ui->chooseSpeed(true));

        // Every mission, by its own solution, following the celebration onwards.
        for (int mission = 0; mission < missions().size(); ++mission) {
            const QByteArray where = "mission " + QByteArray::number(mission);
            QCOMPARE(ui->studio().mission(), mission);
            QVERIFY2(!ui->studio().free(), where);
            UI(typeAndRun(missions().at(mission).solution));
            UI(ui->waitForSheet(QStringLiteral("celebrationSheet"), true));
            const int badges = mission + 1;
            QCOMPARE(ui->text(QStringLiteral("celebrationHeadline")), QStringLiteral("Look what you made!"));
            QVERIFY2(ui->isShown(QStringLiteral("royalLine")) == (badges == 3), where);
            const bool newCanvas = badges % 6 == 0;
            QVERIFY2(ui->isShown(QStringLiteral("canvasLine")) == newCanvas, where);
            if (newCanvas)
                QCOMPARE(ui->text(QStringLiteral("canvasLine")),
                         QStringLiteral("New canvas unlocked: ") + themes().at(badges / 6).name + u'!');
            QCOMPARE(ui->text(QStringLiteral("nextAdventureButton")),
                     badges == 30 ? QStringLiteral("Explore free play") : QStringLiteral("Next adventure"));
            UI(ui->clickForSheet(QStringLiteral("nextAdventureButton"), QStringLiteral("celebrationSheet"), false));
        }
        QVERIFY(ui->studio().free());
        QCOMPARE(ui->text(QStringLiteral("rank")), QStringLiteral("Marble Cove Master"));

        // A creation kept in the gallery, and a picture exported.
        UI(typeAndRun(QStringLiteral("color pink\nrepeat 36 [\n  forward 120\n  right 170\n]\n")));
        UI(ui->clickForSheet(QStringLiteral("saveCreationButton"), QStringLiteral("savingSheet")));
        QCOMPARE(ui->property(QStringLiteral("titleField"), "text").toString(), QStringLiteral("My masterpiece"));
        UI(ui->replaceText(QStringLiteral("titleField"), QStringLiteral("Pink star")));
        UI(ui->clickForSheet(QStringLiteral("saveToGalleryButton"), QStringLiteral("savingSheet"), false));
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("‘Pink star’ is safe in your gallery."));

        QObject *dialog = ui->find(QStringLiteral("exportDialog"));
        QVERIFY(dialog);
        UI(ui->click(QStringLiteral("exportButton")));
        UI(ui->waitFor([&] { return dialog->property("visible").toBool(); }, QStringLiteral("the save dialog")));
        // It opens on the pictures folder, made on this fresh home, with the picture's usual name.
        const QUrl offered = dialog->property("selectedFile").toUrl();
        QVERIFY(QFileInfo(dialog->property("currentFolder").toUrl().toLocalFile()).isDir());
        QCOMPARE(offered.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash),
                 dialog->property("currentFolder").toUrl());
        QCOMPARE(offered.fileName(), QStringLiteral("Marble Cove creation.png"));
        const QString picture = offered.toLocalFile();
        QMetaObject::invokeMethod(dialog, "accept");
        UI(ui->waitFor([&] { return QFile::exists(picture); }, QStringLiteral("the exported picture")));
        QCOMPARE(ui->text(QStringLiteral("statusLine")), QStringLiteral("Your picture is exported!"));
        QCOMPARE(QImage(picture).size(), QSize(1200, 1000));

        // A restart gives everything back.
        ui->shutDown();
        UI(ui->start());
        QVERIFY(!ui->isSheetOpen(QStringLiteral("welcomeSheet")));
        QCOMPARE(ui->studio().badges(), 30);
        QCOMPARE(ui->text(QStringLiteral("rank")), QStringLiteral("Marble Cove Master"));
        QCOMPARE(ui->text(QStringLiteral("experience")), QStringLiteral("✦ 3000 XP"));
        QCOMPARE(ui->text(QStringLiteral("progressText")), QStringLiteral("30 / 30 missions explored"));
        QCOMPARE(ui->studio().turtleName(), QStringLiteral("Orbit"));
        QCOMPARE(ui->studio().creations().size(), 1);
        QCOMPARE(ui->studio().creations().first().title, QStringLiteral("Pink star"));
        UI(ui->clickForSheet(QStringLiteral("galleryButton"), QStringLiteral("gallerySheet")));
        ui->key(Qt::Key_Escape);
        UI(ui->waitForSheet(QStringLiteral("gallerySheet"), false));

        // Starting over.
        UI(ui->clickForSheet(QStringLiteral("profileButton"), QStringLiteral("playerSettingsSheet")));
        UI(ui->click(QStringLiteral("startOverButton")));
        UI(ui->waitFor([&] { return ui->isShown(QStringLiteral("eraseGameButton")); }, QStringLiteral("the erase alert")));
        UI(ui->clickForSheet(QStringLiteral("eraseGameButton"), QStringLiteral("welcomeSheet")));
        QCOMPARE(ui->studio().badges(), 0);
        QVERIFY(ui->studio().creations().isEmpty());
        QVERIFY(ui->store().keys().isEmpty());
        QVERIFY(QFile::exists(picture)); // exported pictures stay where they are

        qInfo("the whole journey took %.1f s", double(clock.elapsed()) / 1000.0);
    }
};

QTEST_MAIN(JourneyTest)
#include "tst_journey.moc"
