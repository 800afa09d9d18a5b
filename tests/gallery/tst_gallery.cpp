#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "gallery/CreationCodec.h"
#include "gallery/PictureExport.h"
#include "support/StudioFixture.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

namespace {

const QString square = QStringLiteral("repeat 4 [fd 50 rt 90]");

// A drawing carried out to its end in free play, ready to be saved.
void drawInFreePlay(Studio &studio, const QString &code)
{
    studio.enterFree();
    studio.setCode(code);
    stepToEnd(studio);
}

void saveAs(Studio &studio, const QString &title)
{
    studio.setSaving(true);
    studio.setCreationTitle(title);
    studio.saveCreation();
    QTRY_VERIFY(!studio.storingCreation());
}

const QString exported = QStringLiteral("Your picture is exported!");

// The next line the other process prints; empty when it printed none in time.
QByteArray lineFrom(QProcess &process)
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(20000))
            return {};
    }
    return process.readLine().trimmed();
}

Creation titled(const QString &title)
{
    Creation creation;
    creation.title = title;
    creation.date = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC);
    return creation;
}

const char *validCreation =
    "{\"theme\":2,\"strokes\":[{\"width\":4,\"color\":\"pink\",\"to\":[0,-10],\"from\":[0,0]}],\"turtle\":1,"
    "\"date\":700000000.25,\"code\":\"fd 10\",\"title\":\"Tiny\","
    "\"id\":\"0f8fad5b-d9cb-469f-a165-70867728950e\",\"mood\":\"happy\"}";

const char *expectedStart =
    "[{\"id\":\"0F8FAD5B-D9CB-469F-A165-70867728950E\",\"title\":\"Tiny \\\"one\\\"\","
    "\"code\":\"fd 10\\n\",\"date\":10.5,\"turtle\":1,\"theme\":2,\"strokes\":[{";

} // namespace

class GalleryTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<StudioFixture> fixture;

private slots:
    void init() { fixture = std::make_unique<StudioFixture>(); }

    void aSavedGalleryComesBackAfterARestart()
    {
        Studio &studio = fixture->studio;
        studio.setTheme(0);
        drawInFreePlay(studio, square);
        saveAs(studio, QStringLiteral("  Box  "));
        QCOMPARE(studio.message(), QStringLiteral("‘Box’ is safe in your gallery."));
        QVERIFY(!studio.saving());
        QVERIFY(studio.saveCompanion(2, QStringLiteral("Orbit")));
        drawInFreePlay(studio, QStringLiteral("color red width 7 fd 33.3 rt 120 fd 12.5"));
        saveAs(studio, QString(100, u'x'));

        const QList<Creation> saved = studio.creations();
        QCOMPARE(saved.size(), 2);
        QCOMPARE(saved.at(0).title, QString(80, u'x'));
        QCOMPARE(saved.at(1).title, QStringLiteral("Box"));
        QCOMPARE(saved.at(0).turtle, 2);
        QCOMPARE(saved.at(0).strokes.size(), 2);
        QVERIFY(saved.at(0).id != saved.at(1).id);

        const auto again = fixture->restart();
        QCOMPARE(again->creations(), saved); // ids, titles, codes, dates, companions, themes, strokes

        const QJsonArray stored = QJsonDocument::fromJson(*fixture->store.data(QStringLiteral("creations"))).array();
        QCOMPARE(stored.size(), 2);
        QCOMPARE(stored.at(0).toObject().value(QStringLiteral("title")).toString(), QString(80, u'x'));
    }

    void theStoredFormIsCompactAndOrdered()
    {
        Creation creation;
        creation.id = QUuid(QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}"));
        creation.title = QStringLiteral("Tiny \"one\"");
        creation.code = QStringLiteral("fd 10\n");
        creation.date = QDateTime(QDate(2001, 1, 1), QTime(0, 0, 10, 500), Qt::UTC);
        creation.turtle = 1;
        creation.theme = 2;
        creation.strokes = {Stroke{QPointF(0, 0), QPointF(0, -10), QStringLiteral("pink"), 4}};
        const QByteArray text = encodeCreations({creation});
        QVERIFY2(text.startsWith(expectedStart), text.constData());
        QCOMPARE(text.count(' '), 2); // only the blanks inside the title and the code
        QCOMPARE(decodeCreations(text), std::optional<QList<Creation>>(QList<Creation>{creation}));
        QCOMPARE(encodeCreations({}), QByteArray("[]"));

        // Saving puts the new creation in front of the already encoded list.
        Creation newer = creation;
        newer.id = QUuid::createUuid();
        newer.title = QStringLiteral("Newer");
        QCOMPARE(prependCreation(newer, encodeCreations({creation})), encodeCreations({newer, creation}));
        QCOMPARE(prependCreation(newer, encodeCreations({})), encodeCreations({newer}));
    }

    void handWrittenGalleries_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("readable");
        const QJsonObject valid = QJsonDocument::fromJson(QByteArray("[") + validCreation + "]").array().first().toObject();
        QTest::newRow("any key order, lower-case id, extra key") << QByteArray("[") + validCreation + "]" << true;
        QTest::newRow("empty list") << QByteArray("[]") << true;
        for (const char *key : {"id", "title", "code", "date", "turtle", "theme", "strokes"}) {
            QJsonObject missing = valid;
            missing.remove(QLatin1String(key));
            QTest::addRow("missing %s", key)
                << QJsonDocument(QJsonArray{valid, missing}).toJson(QJsonDocument::Compact) << false;
        }
        const QList<std::pair<const char *, QJsonValue>> wrong{
            {"id", QStringLiteral("0f8fad5b-d9cb-469f-a165-70867728950")},
            {"id", QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}")},
            {"id", QStringLiteral("0f8fad5bd9cb469fa16570867728950e")},
            {"id", QStringLiteral("0f8fad5b-d9cb-469f-a165-70867728950g")},
            {"title", 5},
            {"code", QJsonValue::Null},
            {"date", QStringLiteral("yesterday")},
            {"turtle", 1.5},
            {"theme", QStringLiteral("2")},
            {"strokes", QJsonObject()},
            {"strokes", QJsonArray{QJsonObject{{"from", QJsonArray{0, 0}}}}},
        };
        for (const auto &[key, value] : wrong) {
            QJsonObject bad = valid;
            bad.insert(QLatin1String(key), value);
            QTest::addRow("wrong %s: %s", key, QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).constData())
                << QJsonDocument(QJsonArray{bad, valid}).toJson(QJsonDocument::Compact) << false;
        }
        QTest::newRow("not JSON") << QByteArray("[{") << false;
        QTest::newRow("an object, not a list") << QByteArray(validCreation) << false;
    }

    void handWrittenGalleries()
    {
        QFETCH(QByteArray, json);
        QFETCH(bool, readable);
        fixture->store.setData(QStringLiteral("creations"), json);
        const auto studio = fixture->restart();
        QCOMPARE(decodeCreations(json).has_value(), readable);
        if (!readable)
            QVERIFY(studio->creations().isEmpty());
        QCOMPARE(fixture->store.data(QStringLiteral("creations")), std::optional<QByteArray>(json)); // untouched
        if (readable && !studio->creations().isEmpty()) {
            const Creation &tiny = studio->creations().first();
            QCOMPARE(tiny.id, QUuid(QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}")));
            QCOMPARE(tiny.date, QDateTime::fromMSecsSinceEpoch(qint64(978307200 + 700000000) * 1000 + 250, Qt::UTC));
            QCOMPARE(tiny.theme, 2);
            QCOMPARE(tiny.strokes.first().to, QPointF(0, -10));
        }

        // The next save replaces an unreadable list only once its bytes are kept beside the store.
        const qsizetype before = studio->creations().size();
        drawInFreePlay(*studio, square);
        saveAs(*studio, QStringLiteral("Next"));
        QCOMPARE(studio->creations().size(), before + 1);
        QCOMPARE(decodeCreations(*fixture->store.data(QStringLiteral("creations"))), studio->creations());
        const QFileInfoList kept = QDir(fixture->folder.path()).entryInfoList({"preferences.sqlite.creations.unreadable-*"});
        QCOMPARE(kept.size(), readable ? 0 : 1);
        if (!readable) {
            QFile file(kept.first().filePath());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), json);
        }
    }

    // The stored gallery is read no earlier than asked for, so another window's save made
    // after start-up is there; decoding ahead and saving first give the same list.
    void theGalleryIsReadWhenFirstNeeded_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("asked") << "asked";
        QTest::newRow("decoded ahead") << "ahead";
        QTest::newRow("saved before asking") << "saved";
        QTest::newRow("unreadable, decoded ahead") << "unreadable";
    }

    void theGalleryIsReadWhenFirstNeeded()
    {
        QFETCH(QString, way);
        const QString key = QStringLiteral("creations");
        QList<Creation> stored{titled(QStringLiteral("Old"))};
        fixture->store.setData(key, encodeCreations(stored));
        const auto studio = fixture->restart();
        stored.prepend(titled(QStringLiteral("From another window")));
        fixture->store.setData(key, way == u"unreadable" ? QByteArray("[{}]") : encodeCreations(stored));
        if (way == u"ahead" || way == u"unreadable") {
            studio->decodeCreationsAhead();
            fixture->store.setData(key, encodeCreations({})); // read already; decoding goes on apart
        }
        if (way == u"saved") {
            drawInFreePlay(*studio, square);
            saveAs(*studio, QStringLiteral("New"));
            stored.prepend(studio->creations().value(0));
            QCOMPARE(studio->creations().value(0).title, QStringLiteral("New"));
        }
        QCOMPARE(studio->creations(), way == u"unreadable" ? QList<Creation>() : stored);
    }

    // Huge stored values never reach the screens whole: titles are cut as a save cuts them (also
    // through long character clusters), code too long for the editor is refused or kept aside.
    void hugeValuesStayOffTheScreens()
    {
        const QString eighty = QString(79, u'T') + u'e' + QString(2000, QChar(0x301));
        QCOMPARE(titled(eighty + QStringLiteral("xyz")).shownTitle(), eighty);
        Creation huge = titled(QString(100000, u'T'));
        huge.code = QString(Studio::maxCodeLength + 1, u' ');
        Studio &studio = fixture->studio;
        const QString code = studio.code();
        studio.openCreation(huge);
        QCOMPARE(studio.message(), u'‘' + QString(80, u'T') + QStringLiteral("’ is too big to open in the editor. Try another creation."));
        QVERIFY(!studio.free());
        studio.setCode(huge.code);
        QCOMPARE(studio.code(), code);
        QCOMPARE(studio.message(), QStringLiteral("That's more code than a program can use. Try a smaller piece."));

        fixture->store.setString(QStringLiteral("code0"), huge.code);
        QCOMPARE(fixture->restart()->code(), missions().first().starter);
        QVERIFY(!fixture->store.string(QStringLiteral("code0")));
        QCOMPARE(QDir(fixture->folder.path()).entryList({"preferences.sqlite.code0.unreadable-*"}).size(), 1);
    }

    // Two windows on one store, saving in turn: neither loses the other's creations, badges or names.
    void twoWindowsKeepEachOthersWork()
    {
        constexpr int saves = 50;
        fixture->store.setIntegerArray(QStringLiteral("completed"), {0, 2});
        const auto studio = fixture->restart();
        QProcess other;
        other.start(QStringLiteral(GALLERY_SAVER), {fixture->store.filePath(), QString::number(saves)});
        QCOMPARE(lineFrom(other), "ready");
        drawInFreePlay(*studio, square);
        for (int i = 0; i < saves; ++i) {
            saveAs(*studio, QStringLiteral("This window"));
            other.write("\n");
            QCOMPARE(lineFrom(other), "saved");
        }
        QCOMPARE(lineFrom(other), "done");
        QVERIFY(other.waitForFinished());
        QCOMPARE(other.exitCode(), 0);
        studio->select(1);
        studio->setCode(missions().at(1).solution);
        stepToEnd(*studio);
        QVERIFY(studio->saveCompanion(0, QStringLiteral("Sprout")));

        const auto after = fixture->restart();
        QSet<QUuid> ids;
        for (const Creation &creation : after->creations())
            ids.insert(creation.id);
        QCOMPARE(ids.size(), 2 * saves);
        QCOMPARE(after->completedInOrder(), QList<int>({0, 1, 2, 3}));
        QCOMPARE(after->turtleNames(), (QMap<QString, QString>{{"0", "Sprout"}, {"1", "Pebble"}}));
    }

    // A save is written apart: until it is on the disk the sheet stays open, nothing says it is
    // safe and a second press adds nothing; closing the window and erasing wait for it.
    void aSaveIsSafeOnlyOnceWritten_data()
    {
        QTest::addColumn<QString>("then");
        QTest::newRow("written") << "written";
        QTest::newRow("window closed") << "closed";
        QTest::newRow("game erased") << "erased";
    }

    void aSaveIsSafeOnlyOnceWritten()
    {
        QFETCH(QString, then);
        const QString path = fixture->folder.filePath(QStringLiteral("own.sqlite"));
        auto store = std::make_unique<SqlitePreferencesStore>(path);
        auto studio = std::make_unique<Studio>(*store, false);
        drawInFreePlay(*studio, square);
        const QString before = studio->message();
        studio->setSaving(true);
        studio->setCreationTitle(QStringLiteral("Box"));
        studio->saveCreation();
        studio->saveCreation();
        QVERIFY(studio->storingCreation());
        QVERIFY(studio->saving());
        QCOMPARE(studio->message(), before);
        if (then == u"written") {
            QTRY_VERIFY(!studio->storingCreation());
            QVERIFY(!studio->saving());
            QCOMPARE(studio->message(), QStringLiteral("‘Box’ is safe in your gallery."));
        } else if (then == u"erased") {
            studio->requestGameReset();
            studio->finishProfileDismissal();
            studio->finishSaving();
            QVERIFY(studio->creations().isEmpty());
        }
        studio.reset();
        store = std::make_unique<SqlitePreferencesStore>(path);
        QCOMPARE(Studio(*store, false).creations().size(), then == u"erased" ? 0 : 1);
    }

    void savingNeedsTheFinishedDrawingOfTheCurrentCode_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::newRow("edited after the run") << "edited";
        QTest::newRow("run stopped halfway") << "stopped";
        QTest::newRow("still running") << "running";
        QTest::newRow("never run") << "fresh";
    }

    void savingNeedsTheFinishedDrawingOfTheCurrentCode()
    {
        QFETCH(QString, situation);
        Studio &studio = fixture->studio;
        studio.enterFree();
        studio.setCode(square);
        if (situation == u"edited") {
            stepToEnd(studio);
            studio.setCode(square + QStringLiteral(" fd 5"));
        } else if (situation != u"fresh") {
            studio.setSpeed(Studio::slowestSpeed);
            studio.run();
            if (situation == u"stopped")
                studio.stop();
        }
        saveAs(studio, QStringLiteral("Box"));
        QCOMPARE(studio.message(), QStringLiteral("Run your latest code all the way through before saving."));
        QVERIFY(!studio.saving());
        QVERIFY(studio.creations().isEmpty());
        QVERIFY(!fixture->store.data(QStringLiteral("creations")));
        studio.stop();
    }

    void aBlankTitleDoesNothing()
    {
        Studio &studio = fixture->studio;
        drawInFreePlay(studio, square);
        const QString message = studio.message();
        saveAs(studio, QStringLiteral(" \n\t "));
        QVERIFY(studio.saving());
        QCOMPARE(studio.message(), message);
        QVERIFY(studio.creations().isEmpty());
    }

    void aRunToTheEndCanBeSaved()
    {
        Studio &studio = fixture->studio;
        studio.enterFree();
        studio.setCode(square);
        studio.setSpeed(Studio::fastestSpeed);
        studio.run();
        QTRY_VERIFY(!studio.running());
        saveAs(studio, QStringLiteral("Quick box"));
        QCOMPARE(studio.creations().size(), 1);
        QCOMPARE(studio.creations().first().strokes.size(), 4);
    }

    void reopeningACreationRemixesItInFreePlay()
    {
        Studio &studio = fixture->studio;
        fixture->store.setIntegerArray(QStringLiteral("completed"), {0, 1, 2});
        Creation creation;
        creation.title = QStringLiteral("Pointy");
        creation.code = QStringLiteral("color red rt 90 fd 40 pu fd 10");
        creation.turtle = 2;
        creation.theme = 3; // not earned: reopening does not ask
        creation.strokes = {Stroke{QPointF(0, 0), QPointF(40, 0), QStringLiteral("red"), 4}};
        studio.setGallery(true);
        studio.openCreation(creation);
        QVERIFY(studio.free());
        QVERIFY(!studio.gallery());
        QCOMPARE(studio.code(), creation.code);
        QCOMPARE(studio.turtle(), 2);
        QCOMPARE(studio.theme(), 3);
        QCOMPARE(studio.strokes(), creation.strokes);
        QCOMPARE(studio.plannedStrokes(), creation.strokes);
        QCOMPARE(studio.point(), QPointF(50, 0));
        QVERIFY(!studio.pen());
        QCOMPARE(studio.message(), QStringLiteral("Opened ‘Pointy’. Remix it and save a new copy."));
        QCOMPARE(fixture->store.string(QStringLiteral("freeCode")), creation.code);
        QCOMPARE(fixture->store.integer(QStringLiteral("theme")), 3);

        saveAs(studio, QStringLiteral("Pointy again")); // a reopened creation counts as a finished run
        QCOMPARE(studio.creations().size(), 1);
        QCOMPARE(studio.creations().first().strokes, creation.strokes);

        creation.code = QStringLiteral("fd 10 jump");
        studio.openCreation(creation);
        QVERIFY(studio.strokes().isEmpty());
        QCOMPARE(studio.code(), creation.code);
    }

    void exportNeedsADrawing()
    {
        Studio &studio = fixture->studio;
        const QString path = fixture->folder.filePath(QStringLiteral("Marble Cove creation.png"));
        QVERIFY(!studio.prepareExport());
        QCOMPARE(studio.message(), QStringLiteral("Draw something first, then export your picture."));
        studio.setMessage(QString());
        studio.exportPNG(path);
        QCOMPARE(studio.message(), QStringLiteral("Draw something first, then export your picture."));
        QVERIFY(!QFile::exists(path));
    }

    void exportWritesThePictureOnTheThemeColour()
    {
        Studio &studio = fixture->studio;
        drawInFreePlay(studio, square);
        const QString path = fixture->folder.filePath(QStringLiteral("Marble Cove creation.png"));
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("an older file of the same name");
        old.close();

        QVERIFY(studio.prepareExport());
        studio.exportPNG(path);
        QTRY_COMPARE(studio.message(), exported);
        const QImage meadow(path);
        QCOMPARE(meadow.size(), QSize(1200, 1000));
        QCOMPARE(meadow.pixelColor(0, 0).alpha(), 0);

        fixture->store.setIntegerArray(QStringLiteral("completed"), {0, 1, 2, 3, 4, 5});
        const auto restarted = fixture->restart();
        drawInFreePlay(*restarted, square);
        restarted->setTheme(1);
        restarted->exportPNG(path);
        QTRY_COMPARE(restarted->message(), exported);
        const QImage peach(path);
        QVERIFY(meadow.pixelColor(600, 900) != peach.pixelColor(600, 900));
        QCOMPARE(peach.pixelColor(600, 900).rgb(), themes().at(1).color.rgb());
    }

    void exportToAPlaceThatCannotBeWritten_data()
    {
        QTest::addColumn<QString>("place");
        QTest::newRow("missing folder") << "no such folder/picture.png";
        QTest::newRow("a folder, not a file") << "";
    }

    void exportToAPlaceThatCannotBeWritten()
    {
        QFETCH(QString, place);
        Studio &studio = fixture->studio;
        drawInFreePlay(studio, square);
        const QString path = place.isEmpty() ? fixture->folder.path() : fixture->folder.filePath(place);
        studio.exportPNG(path);
        QTRY_COMPARE(studio.message(), QStringLiteral("I couldn't save there. Try another folder."));
        QVERIFY(!QFile::exists(fixture->folder.filePath(QStringLiteral("no such folder"))));
    }

    // The save dialog opens on a folder that exists: the pictures folder, made on a fresh home,
    // or the home folder when the pictures folder cannot be made.
    void exportStartsInAFolderThatExists_data()
    {
        QTest::addColumn<bool>("blocked");
        QTest::newRow("fresh home") << false;
        QTest::newRow("pictures cannot be made") << true;
    }

    void exportStartsInAFolderThatExists()
    {
        QFETCH(bool, blocked);
        QTemporaryDir home;
        const QByteArray oldHome = qgetenv("HOME");
        const QByteArray oldConfig = qgetenv("XDG_CONFIG_HOME");
        qputenv("HOME", home.path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
        const QString pictures = home.filePath(QStringLiteral("Pictures"));
        if (blocked) {
            QFile file(pictures);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const QString folder = exportFolder();
        qputenv("HOME", oldHome);
        qputenv("XDG_CONFIG_HOME", oldConfig);
        QCOMPARE(folder, blocked ? home.path() : pictures);
        QVERIFY(QFileInfo(folder).isDir());
    }

    void anExportedPictureOpensWithItsCode()
    {
        Studio &studio = fixture->studio;
        const QString code = QStringLiteral("; Schildkröte ✦ 🐢\nrepeat 4 [fd 50 rt 90]");
        drawInFreePlay(studio, code);
        const QString path = fixture->folder.filePath(QStringLiteral("remix.png"));
        studio.exportPNG(path);
        QTRY_COMPARE(studio.message(), exported);

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains("iTXtMarble Cove code"));
        const QImage exported(path);
        QCOMPARE(exported.text(QStringLiteral("Marble Cove code")), code);
        QCOMPARE(exported, renderPicture(studio.strokes(), themes().at(0).color).convertToFormat(exported.format()));

        const auto restarted = fixture->restart();
        restarted->setGallery(true);
        restarted->openPicture(path);
        QVERIFY(restarted->free());
        QVERIFY(!restarted->gallery());
        QCOMPARE(restarted->code(), code);
        QCOMPARE(restarted->strokes().size(), 4);
    }

    void otherFilesDoNotOpen_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QBuffer foreign;
        foreign.open(QIODevice::WriteOnly);
        QImage picture(8, 8, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        picture.setText(QStringLiteral("Title"), QStringLiteral("Not ours"));
        picture.save(&foreign, "png");
        const QString noCode = QStringLiteral("That picture has no Marble Cove code inside. Try one you exported from Marble Cove.");
        const QString unreadable = QStringLiteral("I couldn't open that file. Try a picture you exported from Marble Cove.");
        QTest::newRow("another program's PNG") << foreign.data() << noCode;
        QTest::newRow("not a picture") << QByteArray("repeat 4 [fd 50 rt 90]") << unreadable;
        QTest::newRow("cut short") << QByteArray() << unreadable;
    }

    void otherFilesDoNotOpen()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        Studio &studio = fixture->studio;
        const QString path = fixture->folder.filePath(QStringLiteral("picture.png"));
        if (bytes.isEmpty()) {
            drawInFreePlay(studio, square);
            studio.exportPNG(path);
            QTRY_COMPARE(studio.message(), exported);
            QFile picture(path);
            QVERIFY(picture.open(QIODevice::ReadOnly));
            bytes = picture.readAll();
            bytes.chop(20); // the image data's end and the closing chunk are lost
            studio.select(0);
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const QString before = studio.code();
        studio.openPicture(path);
        QCOMPARE(studio.message(), message);
        QVERIFY(!studio.free());
        QCOMPARE(studio.code(), before);
    }

    void theDrawingExportsAsVectorLines()
    {
        Studio &studio = fixture->studio;
        drawInFreePlay(studio, QStringLiteral("fd 50 color red rt 90 fd 80 rt 45 fd 20"));
        const QString path = fixture->folder.filePath(QStringLiteral("drawing.svg"));
        studio.exportSVG(path);
        QTRY_COMPARE(studio.message(), exported);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader svg(&file);
        int lines = 0;
        while (!svg.atEnd()) {
            if (svg.readNext() == QXmlStreamReader::StartElement && svg.name() == QStringLiteral("polyline"))
                ++lines;
        }
        QVERIFY2(!svg.hasError(), qPrintable(svg.errorString()));
        QCOMPARE(lines, 3);
    }

    void eraseEmptiesTheGallery()
    {
        Studio &studio = fixture->studio;
        drawInFreePlay(studio, square);
        saveAs(studio, QStringLiteral("Box"));
        studio.setCreationTitle(QStringLiteral("draft"));
        studio.requestGameReset();
        studio.finishProfileDismissal();
        QVERIFY(studio.creations().isEmpty());
        QCOMPARE(studio.creationTitle(), QString());
        QVERIFY(!fixture->store.data(QStringLiteral("creations")));
    }
};

QTEST_GUILESS_MAIN(GalleryTest)
#include "tst_gallery.moc"
